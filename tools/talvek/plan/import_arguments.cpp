#include "talvek/plan/import_arguments.h"

#include <CLI/CLI.hpp>
#include <cmath>
#include <cstdio>
#include <optional>

#include "talvek/support/messages.h"

namespace talvek::host {

namespace {

double parseUnit(const std::string& text) {
    const std::optional<double> unit = lengthUnit(text);
    if (!unit) {
        throw CLI::ValidationError("--unit", "no unit " + text + "; mm, cm, m or in");
    }
    return *unit;
}

double parseWeld(const std::string& text) {
    double distance = 0;
    if (!CLI::detail::lexical_cast(text, distance) || !std::isfinite(distance) || distance <= 0) {
        throw CLI::ValidationError("--weld", text + " is not a distance in millimetres");
    }
    return distance;
}

/// A whole number as far as there are digits for it.
std::string wholeNumber(double value) {
    char text[400];
    std::snprintf(text, sizeof text, "%.0f", value);
    return text;
}

}  // namespace

void addImportArguments(CLI::App& command, ImportOptions& options) {
    command
        .add_option_function<std::string>(
            "--unit", [&options](const std::string& text) { options.unit = parseUnit(text); },
            "The mesh's unit, mm (default), cm, m or in, for formats that state none")
        ->type_name("UNIT");
    command
        .add_option_function<std::string>(
            "--weld", [&options](const std::string& text) { options.weld = parseWeld(text); },
            "Make vertices one that lie within X mm of each other")
        ->type_name("X");
    command.add_flag_function(
        "--recentre,!--no-recentre", [&options](std::int64_t count) { options.recentre = count > 0; },
        "Take a whole-number offset off the coordinates, or never do (default: where they are too large)");
}

std::string meshArgumentText(const std::string& purpose) {
    return purpose + ": " + readExtensions("or") + "; .ply.gz and the like";
}

static std::string sentenceOf(const std::string& path, const std::string& note) {
    return path + ": " + note;
}

void printImport(const std::string& path, const LoadedMesh& loaded) {
    for (const std::string& note : loaded.notes) {
        say(sentenceOf(path, note));
    }
    const MeshPlace& place = loaded.place;
    if (place.unit != 1) {
        say(path + ": 1 unit of the file is " + briefNumber(place.unit) + " mm");
    }
    if (place.offset != std::array<double, 3>{}) {
        say(path + ": offset " + wholeNumber(place.offset[0]) + " " + wholeNumber(place.offset[1]) + " " +
            wholeNumber(place.offset[2]) + " taken off its coordinates");
    }
}

}  // namespace talvek::host
