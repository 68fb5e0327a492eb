// How far each cell of a grid moves in an epoch.
#pragma once

#include <memory>

#include "weathering/grid.h"
#include "weathering/mineral_map.h"

namespace talvek {

/// The same delta, narrowed to single precision, in every cell. Throws std::bad_alloc.
std::unique_ptr<Grid> constantDeltaGrid(double delta);

/// The deltas of the minerals under the grid, interpolated linearly between the four pixels around each cell's corner.
/// Beyond the last column and row of the map the last pixels read stay. Null for a map of other than three channels.
/// Throws std::bad_alloc.
std::unique_ptr<Grid> mineralDeltaGrid(const MineralMap& map, double delta);

/// Moves every cell of a grid of positions that is not empty along its normal. Does nothing when a grid is null or has
/// other than three, three and one channels.
void applyDeltaGrid(Grid* positions, const Grid* normals, const Grid* deltas);

}  // namespace talvek
