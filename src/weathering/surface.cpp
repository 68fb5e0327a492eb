#include "weathering/surface.h"

#include "math/not_a_number.h"
#include "mesh/normals.h"

namespace talvek {

namespace {

/// A second name for the positions, the faces and the texture of a mesh.
std::unique_ptr<Object3D> sharedSurface(const Object3D& mesh) {
    auto surface = std::make_unique<Object3D>();
    surface->numVertices = mesh.numVertices;
    surface->numFaces = mesh.numFaces;
    surface->numTexels = mesh.numTexels;
    surface->vertices = borrowArray(mesh.vertices);
    surface->vertexIndex = borrowArray(mesh.vertexIndex);
    surface->texels = borrowArray(mesh.texels);
    surface->texelIndex = borrowArray(mesh.texelIndex);
    return surface;
}

}  // namespace

std::unique_ptr<Object3D> withNormals(const Object3D& mesh) {
    std::unique_ptr<Object3D> surface = sharedSurface(mesh);
    surface->vertexNormals =
        mesh.vertexNormals != nullptr ? borrowArray(mesh.vertexNormals) : computeVertexNormals(mesh);
    return surface;
}

std::unique_ptr<Object3D> workingCopy(const Object3D& mesh) {
    const std::int64_t numValues = 3 * std::int64_t{mesh.numVertices};
    std::unique_ptr<Object3D> surface = sharedSurface(mesh);
    surface->vertices = copyArray(mesh.vertices.get(), numValues);
    surface->vertexNormals =
        mesh.vertexNormals != nullptr ? copyArray(mesh.vertexNormals.get(), numValues) : computeVertexNormals(mesh);
    return surface;
}

void moveAlongNormals(Object3D& mesh, float distance) {
    const std::span<float> positions = mesh.vertexSpan();
    for (std::size_t i = 0; i < positions.size(); ++i) {
        positions[i] = withOneNan(positions[i] + distance * mesh.vertexNormals[i]);
    }
}

}  // namespace talvek
