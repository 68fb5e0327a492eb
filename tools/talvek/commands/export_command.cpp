#include "talvek/commands/export_command.h"

#include <CLI/CLI.hpp>
#include <cstdio>
#include <memory>
#include <string>

#include "talvek/export/export_run.h"
#include "talvek/results/run_series.h"
#include "talvek/support/exit_status.h"
#include "talvek/support/messages.h"

namespace talvek::host {

namespace {

struct ExportArguments {
    std::string mesh;
    std::string time = "days";
    std::string upAxis = "z";
    ExportRequest request;
};

int exportCommand(ExportArguments& arguments) {
    ExportRequest& request = arguments.request;
    request.inYears = arguments.time == "years";
    request.upAxis = arguments.upAxis[0];
    const RunSeries series(arguments.mesh);
    const ExportReport report = exportRun(series, request);
    if (report.files.size() == 1) {
        std::printf("%s\n", report.files.front().c_str());
    } else {
        std::printf("%s to %s: %s\n", report.files.front().c_str(), report.files.back().c_str(),
                    countOf(report.files.size(), "file").c_str());
    }
    for (const std::string& thing : report.notCarried) {
        std::printf("not carried: %s\n", thing.c_str());
    }
    return kExitDone;
}

}  // namespace

void addExportCommand(CommandSet& commands) {
    const auto arguments = std::make_shared<ExportArguments>();
    CLI::App& command = commands.add("export", "Write a run for other programs: " + exportFormats(),
                                     [arguments] { return exportCommand(*arguments); });
    addFileArgument(command, arguments->mesh, "MESH", "Mesh that has been weathered, or the record of a run (.json)");
    ExportRequest& request = arguments->request;
    command.add_option("--to", request.target, "File or folder to write")->required()->type_name("FILE|FOLDER");
    command
        .add_option("--format", request.format, exportFormats() + "; told from the file's extension, ply for a folder")
        ->type_name("FORMAT");
    command.add_flag("--colours", request.wantsColours, "Colour the vertices by their displacement (ply, vtp, glb)");
    command.add_option("--palette", request.palette, "stone (default) or viridis")->type_name("NAME");
    command.add_option("--epoch", request.epoch, "Epoch of a single surface; the last one by default")->type_name("N");
    command.add_option("--time", arguments->time, "Time steps in days (default) or in years of 365 days (vtp)")
        ->check(CLI::IsMember({"days", "years"}))
        ->type_name("UNIT");
    command.add_option("--up", arguments->upAxis, "Axis of the mesh that points up: x, y or z (default) (glb)")
        ->check(CLI::IsMember({"x", "y", "z"}))
        ->type_name("AXIS");
}

}  // namespace talvek::host
