// How far each cell of a grid moves in an epoch.
#pragma once

#include <memory>
#include <vector>

#include "weathering/grid.h"
#include "weathering/mineral_map.h"

namespace talvek {

/// The same delta, narrowed to single precision, in every cell. Throws std::bad_alloc.
std::unique_ptr<Grid> constantDeltaGrid(double delta);

/// How strongly the minerals around each cell of a grid weather: what makes a grid of deltas of an epoch's delta.
class MineralFactorGrid {
  public:
    /// Looks up the four pixels around each cell's corner. Beyond the last column and row of the map, which has to have
    /// three channels, the last pixels read stay. Throws std::bad_alloc.
    explicit MineralFactorGrid(const MineralMap& map);

    /// The deltas of the minerals, interpolated linearly between the four pixels. Throws std::bad_alloc.
    std::unique_ptr<Grid> deltas(double delta) const;

  private:
    /// Four factors per cell, row by row.
    Grid factors_;
    /// How far each column and row stands on the way from its pixels to the next.
    std::vector<double> columns_, rows_;
};

/// The deltas of a MineralFactorGrid; null for a map of other than three channels. Throws std::bad_alloc.
std::unique_ptr<Grid> mineralDeltaGrid(const MineralMap& map, double delta);

/// Moves every cell of a grid of positions that is not empty along its normal. Does nothing when a grid is null or has
/// other than three, three and one channels.
void applyDeltaGrid(Grid* positions, const Grid* normals, const Grid* deltas);

}  // namespace talvek
