#include "talvek/formats/mesh_file.h"

#include <algorithm>
#include <span>
#include <string_view>

#include "Vexo_Lib/mesh_formats.h"
#include "base/system.h"
#include "talvek/formats/imported_mesh.h"
#include "talvek/support/exit_status.h"
#include "talvek/support/messages.h"

namespace talvek::host {

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

std::string runExtensions(const char* lastWord) {
    const std::span<const MeshFormat> formats = meshFormats();
    std::string list;
    for (const MeshFormat& format : formats.first(formats.size() - 1)) {
        list.append(list.empty() ? "" : ", ").append(format.extension);
    }
    return list.append(" ").append(lastWord).append(" ").append(formats.back().extension);
}

bool isNativeName(const std::string& path) {
    return std::ranges::count(meshFormats(), lowerCaseExtension(path), &MeshFormat::extension) > 0;
}

std::unique_ptr<Object3D> readUnchecked(const std::string& path) {
    if (const MeshFormat* format = meshFormatOf(path)) {
        return format->inspect(path.c_str());
    }
    const std::string extension = lowerCaseExtension(path);
    if (isNativeName(path)) {
        std::string message = path;
        message += ": extensions are read in lower or upper case only; rename the file to end in ";
        throw Failure(kExitMesh, message + extension);
    }
    throw Failure(kExitMesh, path + ": the simulation reads " + runExtensions("and"));
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

std::unique_ptr<Object3D> readNativeMesh(const std::string& path) {
    std::unique_ptr<Object3D> mesh = readUnchecked(path);
    if (mesh == nullptr) {
        throw Failure(kExitMesh, path + ": the mesh does not load; talvek check says why");
    }
    const std::int64_t corner = firstBadCorner(*mesh);
    if (corner >= 0) {
        throw Failure(kExitMesh, path + ": the mesh does not load: face " + std::to_string(corner / 3 + 1) +
                                     " names a vertex that is not there; talvek check says more");
    }
    return mesh;
}

LoadedMesh loadMesh(const std::string& path, const ImportOptions& options) {
    return completeMesh(importMesh(path, options));
}

LoadedMesh completeMesh(ImportedMesh&& imported) {
    LoadedMesh loaded{.mesh = nullptr, .notes = importNotes(imported), .place = imported.place};
    loaded.mesh = narrowMesh(std::move(imported));
    loaded.mesh->updateNormals(true);
    loaded.mesh->largestCoordinate = largestAbsoluteCoordinate(*loaded.mesh);
    return loaded;
}

std::unique_ptr<Object3D> readMesh(const std::string& path) {
    if (!isNativeName(path)) {
        return loadMesh(path, {}).mesh;
    }
    requireReadable(path);
    std::unique_ptr<Object3D> mesh = readNativeMesh(path);
    mesh->updateNormals(true);
    mesh->largestCoordinate = largestAbsoluteCoordinate(*mesh);
    return mesh;
}

}  // namespace talvek::host
