// The square grid over texture space on which the QEMSCAN runner keeps a surface.
#pragma once

#include <cstdint>

#include "base/float_image.h"

namespace talvek {

/// Cells in each direction: column x stands at the texture coordinate u = x / kGridSize, row y at v = y / kGridSize.
inline constexpr std::int32_t kGridSize = 460;

/// Grids of positions and normals have three channels, grids of deltas one.
using Grid = FloatImage;

/// Whether there is no surface at a cell of a grid of positions. A surface point in the origin counts as none.
inline bool isEmptyCell(const float* cell) {
    return cell[0] == 0 && cell[1] == 0 && cell[2] == 0;
}

}  // namespace talvek
