// The surface that a run moves.
#pragma once

#include <memory>

#include "mesh/object3d.h"

namespace talvek {

/// A copy of the loaded mesh for a run to move, with its vertex normals. Throws std::bad_alloc.
std::unique_ptr<Object3D> workingCopy(const Object3D& mesh);

/// Moves every vertex by the same distance, in millimetres, along its normal. The mesh has to have vertex normals.
void moveAlongNormals(Object3D& mesh, float distance);

}  // namespace talvek
