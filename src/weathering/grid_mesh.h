// From a grid of positions back to a mesh.
#pragma once

#include <memory>

#include "mesh/object3d.h"
#include "weathering/grid.h"

namespace talvek {

/// Makes a mesh with normals of a grid of positions: a vertex with its texel for every cell that is not empty, column
/// by column, and up to eight triangles around the middle of every block of 3 x 3 cells. Returns null for a null grid
/// and one of other than three channels. The flag has no effect. Throws std::bad_alloc.
std::unique_ptr<Object3D> gridToMesh(const Grid* grid, bool flag);

}  // namespace talvek
