#include "talvek/plan/import_arguments.h"

#include <CLI/CLI.hpp>
#include <cmath>
#include <cstdio>
#include <map>

#include "talvek/support/messages.h"

namespace talvek::host {

namespace {

const std::map<std::string, double> kUnits = {{"mm", 1}, {"cm", 10}, {"in", 25.4}, {"m", 1000}};

double parseUnit(const std::string& text) {
    const std::optional<double> unit = millimetresOfUnit(text);
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

std::optional<double> millimetresOfUnit(const std::string& name) {
    const auto found = kUnits.find(name);
    return found != kUnits.end() ? std::optional(found->second) : std::nullopt;
}

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

void printImport(const std::string& path, const LoadedMesh& loaded) {
    for (const std::string& note : loaded.notes) {
        std::printf("%s: %s\n", path.c_str(), note.c_str());
    }
    const MeshPlace& place = loaded.place;
    if (place.unit != 1) {
        std::printf("%s: 1 unit of the file is %s mm\n", path.c_str(), briefNumber(place.unit).c_str());
    }
    if (place.offset != std::array<double, 3>{}) {
        std::printf("%s: offset %s %s %s taken off its coordinates\n", path.c_str(),
                    wholeNumber(place.offset[0]).c_str(), wholeNumber(place.offset[1]).c_str(),
                    wholeNumber(place.offset[2]).c_str());
    }
}

}  // namespace talvek::host
