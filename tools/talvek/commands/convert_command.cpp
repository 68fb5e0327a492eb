#include "talvek/commands/convert_command.h"

#include <CLI/CLI.hpp>
#include <cstdio>
#include <memory>
#include <string>

#include "Vexo_Lib/sas.h"
#include "base/system.h"
#include "mesh/object3d.h"
#include "talvek/formats/mesh_file.h"
#include "talvek/formats/obj_export.h"
#include "talvek/formats/ply.h"
#include "talvek/formats/stl.h"
#include "talvek/plan/import_arguments.h"
#include "talvek/support/exit_status.h"
#include "talvek/support/same_file.h"

namespace talvek::host {

namespace {

using MeshWriter = bool (*)(const Object3D& mesh, const std::string& path);

struct ExportFormat {
    const char* extension;
    MeshWriter write;
};

bool writeSas(const Object3D& mesh, const std::string& path) {
    return WriteSasFile(path.c_str(), mesh);
}

constexpr ExportFormat kFormats[] = {
    {".obj", writeObjExport}, {".sas", writeSas}, {".ply", writePly}, {".stl", writeStl}};

std::string writtenExtensions() {
    std::string all;
    for (const ExportFormat& format : kFormats) {
        all += (all.empty() ? "" : ", ") + std::string(format.extension);
    }
    return all;
}

MeshWriter writerFor(const std::string& path) {
    const std::string extension = lowerCaseExtension(path);
    for (const ExportFormat& format : kFormats) {
        if (extension == format.extension) {
            return format.write;
        }
    }
    throw Failure(kExitUsage, path + ": meshes are written as " + writtenExtensions());
}

struct ConvertOptions {
    std::string from;
    std::string to;
    ImportOptions import;
    bool mayReplace = false;
};

void requireFreeName(const ConvertOptions& options) {
    if (isSameFile(options.from, options.to)) {
        throw Failure(kExitUsage, options.to + ": a mesh is not written over itself; choose another name");
    }
    if (!options.mayReplace && system::kindOf(options.to.c_str()) == system::FileKind::kRegular) {
        throw Failure(kExitRefused, options.to + ": there is such a file already; --force replaces it");
    }
}

int convertCommand(const ConvertOptions& options) {
    const MeshWriter write = writerFor(options.to);
    requireFreeName(options);
    const LoadedMesh loaded = loadMesh(options.from, options.import);
    if (!write(*loaded.mesh, options.to)) {
        throw Failure(kExitOutput,
                      options.to + ": the file cannot be written; look for the folder, its permissions and room");
    }
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
