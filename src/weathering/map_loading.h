// The mineral map of the session's mesh.
#pragma once

#include <memory>

#include "weathering/mineral_map.h"

namespace talvek {

/// Reads the session's mineral map and reports whether the stone counts as homogeneous. Returns null when it does: the
/// map cannot be read, or the mesh cannot carry one.
std::unique_ptr<MineralMap> loadAndReportMap(bool canCarryMap);

}  // namespace talvek
