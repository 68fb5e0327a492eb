#include "talvek/commands/convert_command.h"

#include <CLI/CLI.hpp>
#include <cstdio>
#include <memory>
#include <string>

#include "talvek/formats/mesh_export.h"
#include "talvek/formats/mesh_file.h"
#include "talvek/plan/import_arguments.h"
#include "talvek/support/exit_status.h"

namespace talvek::host {

namespace {

struct ConvertOptions {
    std::string from;
    std::string to;
    ImportOptions import;
    bool mayReplace = false;
};

int convertCommand(const ConvertOptions& options) {
    requireWritableName(options.from, options.to, options.mayReplace);
    const LoadedMesh loaded = loadMesh(options.from, options.import);
    exportMesh(*loaded.mesh, options.to);
    printImport(options.from, loaded);
    std::printf("%s: %s\n", options.to.c_str(), contentOf(*loaded.mesh).c_str());
    return kExitDone;
}

}  // namespace

void addConvertCommand(CommandSet& commands) {
    const auto options = std::make_shared<ConvertOptions>();
    CLI::App& convert =
        commands.add("convert", "Turn a mesh into another format", [options] { return convertCommand(*options); });
    addFileArgument(convert, options->from, "A", meshArgumentText("Mesh to read"));
    addFileArgument(convert, options->to, "B", "Mesh to write: " + writtenExtensions());
    addImportArguments(convert, options->import);
    convert.add_flag("--force", options->mayReplace, "Replace a file that has the name of B");
}

}  // namespace talvek::host
