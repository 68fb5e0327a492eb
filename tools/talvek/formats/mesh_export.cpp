#include "talvek/formats/mesh_export.h"

#include <algorithm>
#include <string_view>

#include "Vexo_Lib/sas.h"
#include "base/system.h"
#include "talvek/formats/mesh_file.h"
#include "talvek/formats/obj_export.h"
#include "talvek/formats/ply.h"
#include "talvek/formats/stl.h"
#include "talvek/support/exit_status.h"
#include "talvek/support/same_file.h"

namespace talvek::host {

namespace {

struct ExportFormat {
    std::string_view extension;
    bool (*write)(const Object3D& mesh, const std::string& path);
};

bool writeSas(const Object3D& mesh, const std::string& path) {
    return WriteSasFile(path.c_str(), mesh);
}

constexpr ExportFormat kFormats[] = {
    {".obj", writeObjExport}, {".sas", writeSas}, {".ply", writePly}, {".stl", writeStl}};

const ExportFormat& formatOf(const std::string& path) {
    const auto* const found = std::ranges::find(kFormats, lowerCaseExtension(path), &ExportFormat::extension);
    if (found == std::end(kFormats)) {
        throw Failure(kExitUsage, path + ": meshes are written as " + writtenExtensions());
    }
    return *found;
}

}  // namespace

std::string writtenExtensions() {
    std::string all;
    for (const ExportFormat& format : kFormats) {
        all += (all.empty() ? "" : ", ") + std::string(format.extension);
    }
    return all;
}

void requireWritableName(const std::string& source, const std::string& path, bool mayReplace) {
    formatOf(path);
    if (isSameFile(source, path)) {
        throw Failure(kExitUsage, path + ": a mesh is not written over itself; choose another name");
    }
    if (!mayReplace && system::kindOf(path.c_str()) == system::FileKind::kRegular) {
        throw Failure(kExitRefused, path + ": there is such a file already; --force replaces it");
    }
}

void exportMesh(const Object3D& mesh, const std::string& path) {
    if (!formatOf(path).write(mesh, path)) {
        throw Failure(kExitOutput,
                      path + ": the file cannot be written; look for the folder, its permissions and room");
    }
}

}  // namespace talvek::host
