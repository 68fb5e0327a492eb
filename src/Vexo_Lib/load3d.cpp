#include "Vexo_Lib/load3d.h"

#include <algorithm>
#include <cstring>
#include <string_view>

#include "Vexo_Lib/error_report.h"
#include "Vexo_Lib/mesh_formats.h"

namespace talvek {

namespace {

/// Fills the field as strncpy does: cut without a terminator, or padded with NUL.
void setName(Object3D& mesh, std::string_view path) {
    const std::size_t kept = std::min(path.size(), Object3D::kTextSize);
    std::memset(mesh.name, 0, Object3D::kTextSize);
    std::memcpy(mesh.name, path.data(), kept);
}

/// A mesh as its reader returns it; null, after a report, when its faces name vertices it does not have.
std::unique_ptr<Object3D> readChecked(const char* path) {
    const MeshFormat* format = meshFormatOf(path);
    std::unique_ptr<Object3D> mesh = format != nullptr ? format->load(path) : nullptr;
    if (mesh != nullptr && !hasOnlyExistingVertices(*mesh)) {
        reportError(TALVEK_HERE, "face index out of range in ", path);
        return nullptr;
    }
    return mesh;
}

}  // namespace

std::unique_ptr<Object3D> LoadMeshFile(const char* path) try {
    std::unique_ptr<Object3D> mesh = readChecked(path);
    if (mesh != nullptr) {
        mesh->updateNormals(true);
        setName(*mesh, path);
        mesh->largestCoordinate = largestAbsoluteCoordinate(*mesh);
    }
    return mesh;
} catch (const std::bad_alloc&) {
    return nullptr;
}

std::unique_ptr<Object3D> loadBareMesh(const char* path) {
    std::unique_ptr<Object3D> mesh = readChecked(path);
    if (mesh != nullptr) {
        mesh->faceNormals.reset();
        mesh->faceColours.reset();
        mesh->vertexColours.reset();
    }
    return mesh;
}

}  // namespace talvek
