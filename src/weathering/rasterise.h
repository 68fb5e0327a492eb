// From a mesh to a grid over its texture space.
#pragma once

#include <memory>

#include "mesh/object3d.h"
#include "weathering/grid.h"

namespace talvek {

/// Draws every face of a mesh, where its texture coordinates put it, into a grid of kGridSize cells in each direction,
/// and interpolates `attribute`, 3V floats, between its corners; null for a null attribute. Of faces that overlap the
/// last one counts; cells that no face covers are 0. Without a texel index the vertex index stands for it. Not drawn
/// are faces that run clockwise or have no extent in texture space, and those with a corner whose texel does not exist
/// or is not finite: nothing at all of a mesh without texels. Throws std::bad_alloc.
std::unique_ptr<Grid> rasteriseToGrid(const Object3D& mesh, const float* attribute);

}  // namespace talvek
