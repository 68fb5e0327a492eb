#include "talvek/formats/mesh_file.h"

#include <algorithm>

#include "Vexo_Lib/bin.h"
#include "Vexo_Lib/fim.h"
#include "Vexo_Lib/obj.h"
#include "Vexo_Lib/sas.h"
#include "Vexo_Lib/wrl.h"
#include "base/system.h"
#include "talvek/formats/ply.h"
#include "talvek/support/exit_status.h"
#include "talvek/support/messages.h"

namespace talvek::host {

namespace {

/// The library's own loading would write the oldest version anew, in place.
std::unique_ptr<Object3D> readSas(const char* path) {
    std::unique_ptr<Object3D> legacy = ReadLegacySasFile(path);
    return legacy != nullptr ? std::move(legacy) : LoadSasFile(path);
}

struct MeshFormat {
    const char* extension;
    std::unique_ptr<Object3D> (*read)(const char* path);
};

constexpr MeshFormat kFormats[] = {
    {".obj", [](const char* path) { return ReadObjFile(path, true); }},
    {".wrl", [](const char* path) { return ReadWrlFile(path, true); }},
    {".sas", readSas},
    {".bin", ReadBinFile},
    {".fim", LoadFimFile},
    {".ply", [](const char* path) { return readPly(path); }},
};

bool isInOneCase(const std::string& path) {
    const std::string extension = path.substr(path.rfind('.'));
    return std::ranges::none_of(extension, [](char c) { return c >= 'A' && c <= 'Z'; }) ||
           std::ranges::none_of(extension, [](char c) { return c >= 'a' && c <= 'z'; });
}

}  // namespace

std::string lowerCaseExtension(const std::string& path) {
    const std::size_t dot = path.rfind('.');
    std::string extension = dot == std::string::npos ? "" : path.substr(dot);
    for (char& c : extension) {
        c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    }
    return extension;
}

void requireReadable(const std::string& path) {
    switch (system::kindOf(path.c_str())) {
        case system::FileKind::kAbsent:
            throw Failure(kExitMesh, path + ": there is no such file");
        case system::FileKind::kOther:
            throw Failure(kExitMesh, path + ": this is no file but a folder or a device");
        case system::FileKind::kRegular:
            break;
    }
    if (!system::File::openForReading(path.c_str()).isOpen()) {
        throw Failure(kExitMesh, path + ": the file cannot be opened; look for its permissions");
    }
}

std::unique_ptr<Object3D> readUnchecked(const std::string& path) {
    const std::string extension = lowerCaseExtension(path);
    for (const MeshFormat& format : kFormats) {
        if (extension == format.extension && isInOneCase(path)) {
            return format.read(path.c_str());
        }
        if (extension == format.extension) {
            std::string message = path;
            message += ": extensions are read in lower or upper case only; rename the file to end in ";
            throw Failure(kExitMesh, message + extension);
        }
    }
    throw Failure(kExitMesh, path + ": there is no reader for " +
                                 (extension.empty() ? "a name without extension" : extension) +
                                 "; the library reads .obj, .wrl, .sas, .bin and .fim");
}

std::string contentOf(const Object3D& mesh) {
    return countOf(static_cast<std::uint64_t>(mesh.numVertices), "vertex") + ", " +
           countOf(static_cast<std::uint64_t>(mesh.numFaces), "face") + ", " +
           countOf(static_cast<std::uint64_t>(mesh.numTexels), "texture coordinate");
}

std::int64_t firstBadCorner(const Object3D& mesh) {
    const auto corners = mesh.faceSpan();
    const auto bad = std::ranges::find_if(
        corners, [&mesh](std::int32_t vertex) { return vertex < 0 || vertex >= mesh.numVertices; });
    return bad == corners.end() ? -1 : bad - corners.begin();
}

std::unique_ptr<Object3D> readMesh(const std::string& path) {
    requireReadable(path);
    std::unique_ptr<Object3D> mesh = readUnchecked(path);
    if (mesh == nullptr) {
        throw Failure(kExitMesh, path + ": the mesh does not load; talvek check says why");
    }
    const std::int64_t corner = firstBadCorner(*mesh);
    if (corner >= 0) {
        throw Failure(kExitMesh, path + ": the mesh does not load: face " + std::to_string(corner / 3 + 1) +
                                     " names a vertex that is not there; talvek check says more");
    }
    mesh->updateNormals(true);
    mesh->largestCoordinate = largestAbsoluteCoordinate(*mesh);
    return mesh;
}

}  // namespace talvek::host
