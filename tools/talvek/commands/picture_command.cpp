#include "talvek/commands/picture_command.h"

#include <CLI/CLI.hpp>
#include <cmath>
#include <cstdio>
#include <memory>
#include <string>

#include "base/number_text.h"
#include "talvek/formats/mesh_file.h"
#include "talvek/picture/png_writer.h"
#include "talvek/picture/stone_picture.h"
#include "talvek/results/run_series.h"
#include "talvek/support/exit_status.h"

namespace talvek::host {

namespace {

struct PictureArguments {
    std::string mesh;
    std::string output;
    std::string size;
    std::string range;
    std::string upAxis = "z";
    PictureOptions picture;
};

/// Two numbers with a separator between; false where the text is anything else.
bool readPair(std::string_view text, char separator, double& first, double& second) {
    const std::size_t length = parseDouble(text, first);
    if (length == 0 || length >= text.size() || text[length] != separator) {
        return false;
    }
    const std::string_view rest = text.substr(length + 1);
    return parseDouble(rest, second) == rest.size() && !rest.empty();
}

void readSize(const std::string& text, PictureOptions& picture) {
    constexpr double kSmallest = 200;
    constexpr double kLargest = 4096;
    double width = 0;
    double height = 0;
    const auto isSize = [](double length) {
        return length >= kSmallest && length <= kLargest && length == std::floor(length);
    };
    if (!readPair(text, 'x', width, height) || !isSize(width) || !isSize(height)) {
        throw Failure(kExitUsage, text + ": the size is two numbers of pixels, 200 to 4096 each, such as 1600x1000");
    }
    picture.width = static_cast<int>(width);
    picture.height = static_cast<int>(height);
}

ScaleRange readRange(const std::string& text) {
    ScaleRange range;
    if (!readPair(text, ',', range.from, range.to) || !std::isfinite(range.from) || !std::isfinite(range.to) ||
        !(range.from < range.to)) {
        throw Failure(kExitUsage, text + ": the range is two numbers of millimetres, the smaller one first: 0,1.5");
    }
    return range;
}

int pictureCommand(PictureArguments& arguments) {
    if (lowerCaseExtension(arguments.output) != ".png") {
        throw Failure(kExitUsage, arguments.output + ": pictures are written as .png");
    }
    if (!arguments.size.empty()) {
        readSize(arguments.size, arguments.picture);
    }
    if (!arguments.range.empty()) {
        arguments.picture.range = readRange(arguments.range);
    }
    arguments.picture.upAxis = arguments.upAxis[0];
    const RunSeries series(arguments.mesh);
    writePng(drawStonePicture(series, arguments.picture), arguments.output);
    std::printf("%s: %d x %d pixels\n", arguments.output.c_str(), arguments.picture.width, arguments.picture.height);
    return kExitDone;
}

}  // namespace

void addPictureCommand(CommandSet& commands) {
    const auto arguments = std::make_shared<PictureArguments>();
    CLI::App& command = commands.add("picture", "Draw a picture of a weathered stone, coloured by its change",
                                     [arguments] { return pictureCommand(*arguments); });
    addFileArgument(command, arguments->mesh, "MESH", "Mesh that has been weathered");
    PictureOptions& picture = arguments->picture;
    command.add_option("-o,--output", arguments->output, "Picture to write, .png")->required()->type_name("FILE");
    command.add_option("--epoch", picture.epoch, "Epoch to show, 0 for the first surface; the last one by default")
        ->type_name("N");
    command
        .add_option("--view", picture.view,
                    "corner (default), front, back, left, right, top, bottom, or two angles in degrees: round the "
                    "stone from its front, and above the horizon")
        ->type_name("VIEW");
    command.add_option("--up", arguments->upAxis, "Axis of the mesh that points up: x, y or z (default)")
        ->check(CLI::IsMember({"x", "y", "z"}))
        ->type_name("AXIS");
    command.add_option("--size", arguments->size, "Width and height in pixels, 1600x1000 by default")->type_name("WxH");
    command.add_option("--palette", picture.palette, "stone (default) or viridis")->type_name("NAME");
    command
        .add_option("--range", arguments->range,
                    "Smallest and largest change on the colour bar in millimetres; for loss its amount")
        ->type_name("A,B");
}

}  // namespace talvek::host
