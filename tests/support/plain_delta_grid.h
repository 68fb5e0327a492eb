// The deltas of a mineral map on the grid in their most direct form: what the library has to agree with to the last
// bit.
#pragma once

#include <vector>

#include "weathering/mineral_map.h"

namespace talvek::test {

/// 460 x 460 deltas, row by row, of a map of three channels.
std::vector<float> plainDeltas(const MineralMap& map, double delta);

}  // namespace talvek::test
