// What a run does with a mesh, so that a mesh that only looks right is found out.
#pragma once

#include "mesh/object3d.h"

namespace talvek::test {

/// Whether every vertex index names a vertex.
bool hasSoundIndices(const Object3D& mesh);

/// Reads every element that the counts promise, computes the curvature where that is possible, moves the surface by it
/// and by a constant, renews its normals and writes it to nowhere. Throws std::bad_alloc.
void weatherOnce(const Object3D& mesh);

}  // namespace talvek::test
