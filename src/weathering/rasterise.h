// From a mesh to a grid over its texture space.
#pragma once

#include <memory>

#include "mesh/object3d.h"
#include "weathering/grid.h"

namespace talvek {

/// Draws the faces of a mesh, where their texture coordinates put them, into a grid of kGridSize cells in each
/// direction. `attribute` has a triple for each vertex; a cell inside a face gets what is interpolated between the
/// triples of the face's corners, a cell outside all faces gets zeros. A cell inside several faces gets the value of
/// the last of them. Which faces are drawn is said at GridSampling. Returns null for a null attribute. Throws
/// std::bad_alloc.
std::unique_ptr<Grid> rasteriseToGrid(const Object3D& mesh, const float* attribute);

}  // namespace talvek
