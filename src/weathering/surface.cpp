#include "weathering/surface.h"

#include <new>

#include "base/not_a_number.h"

namespace talvek {

namespace {

template <typename T>
bool isLost(const HeapArray<T>& original, const HeapArray<T>& copy) {
    return original != nullptr && copy == nullptr;
}

}  // namespace

std::unique_ptr<Object3D> workingCopy(const Object3D& mesh) {
    std::unique_ptr<Object3D> copy = copyMesh(mesh);
    // A copy goes on without an array it has no memory for, a run cannot.
    if (isLost(mesh.vertexNormals, copy->vertexNormals) || isLost(mesh.texels, copy->texels) ||
        isLost(mesh.texelIndex, copy->texelIndex)) {
        throw std::bad_alloc();
    }
    return copy;
}

void moveAlongNormals(Object3D& mesh, float distance) {
    const std::span<float> positions = mesh.vertexSpan();
    for (std::size_t i = 0; i < positions.size(); ++i) {
        positions[i] = withOneNan(positions[i] + distance * mesh.vertexNormals[i]);
    }
}

}  // namespace talvek
