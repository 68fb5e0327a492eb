// Operating mode "Mesh & QEMSCAN Mineral Data": the surface is resampled on a grid over its texture space, and the grid
// weathers.
#pragma once

#include "mesh/object3d.h"

namespace talvek {

/// Weathers a resampling of the mesh through the session's epochs and writes the frames, which are made of the grid's
/// cells, not of the mesh's vertices. Without a mineral map the stone is homogeneous. A mesh without texels gives
/// frames without vertices. Throws std::bad_alloc.
void runMineralGrid(const Object3D& mesh);

}  // namespace talvek
