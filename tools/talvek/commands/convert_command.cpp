#include "talvek/commands/convert_command.h"

#include <CLI/CLI.hpp>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>
#include <system_error>

#include "Vexo_Lib/sas.h"
#include "mesh/object3d.h"
#include "talvek/formats/mesh_file.h"
#include "talvek/formats/obj_export.h"
#include "talvek/formats/ply.h"
#include "talvek/support/exit_status.h"
#include "talvek/support/paths.h"

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

constexpr ExportFormat kFormats[] = {{".obj", writeObjExport}, {".sas", writeSas}, {".ply", writePly}};

MeshWriter writerFor(const std::string& path) {
    const std::string extension = lowerCaseExtension(path);
    for (const ExportFormat& format : kFormats) {
        if (extension == format.extension) {
            return format.write;
        }
    }
    throw Failure(kExitUsage, path + ": meshes are written as .obj, .sas or .ply");
}

int convertCommand(const std::string& from, const std::string& to) {
    const MeshWriter write = writerFor(to);
    std::error_code ignored;
    if (std::filesystem::equivalent(pathOf(from), pathOf(to), ignored)) {
        throw Failure(kExitUsage, to + ": a mesh is not written over itself; choose another name");
    }
    const std::unique_ptr<Object3D> mesh = readMesh(from);
    if (!write(*mesh, to)) {
        throw Failure(kExitOutput, to + ": the file cannot be written; look for the folder, its permissions and room");
    }
    std::printf("%s: %s\n", to.c_str(), contentOf(*mesh).c_str());
    return kExitDone;
}

}  // namespace

void addConvertCommand(CommandSet& commands) {
    struct Files {
        std::string from;
        std::string to;
    };
    const auto files = std::make_shared<Files>();
    CLI::App& convert = commands.add("convert", "Turn a mesh into another format: OBJ, SAS or PLY",
                                     [files] { return convertCommand(files->from, files->to); });
    addFileArgument(convert, files->from, "A", "Mesh to read: " + readExtensions());
    addFileArgument(convert, files->to, "B", "Mesh to write: .obj, .sas or .ply");
}

}  // namespace talvek::host
