// The surface that a run moves.
#pragma once

#include <cstdint>
#include <memory>

#include "math/not_a_number.h"
#include "mesh/object3d.h"

namespace talvek {

/// The surface of a mesh with its vertex normals, which are computed where the mesh has none. Everything else is shared
/// with the mesh, which has to outlive it. Throws std::bad_alloc.
std::unique_ptr<Object3D> withNormals(const Object3D& mesh);

/// The same with positions and normals of its own, for a run to move. Throws std::bad_alloc.
std::unique_ptr<Object3D> workingCopy(const Object3D& mesh);

/// Moves every vertex by the same distance, in millimetres, along its normal. The mesh has to have vertex normals.
void moveAlongNormals(Object3D& mesh, float distance);

/// Moves one vertex by a distance, in millimetres, along its normal. The mesh has to have vertex normals.
inline void moveVertex(Object3D& mesh, std::int32_t vertex, float distance) {
    float* position = mesh.vertices.get() + 3 * std::int64_t{vertex};
    const float* normal = mesh.vertexNormals.get() + 3 * std::int64_t{vertex};
    for (int k = 0; k < 3; ++k) {
        position[k] = withOneNan(position[k] + distance * normal[k]);
    }
}

}  // namespace talvek
