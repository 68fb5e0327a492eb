// How far the epochs of a run will move the surface.
#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "talvek/plan/session_plan.h"

namespace talvek::host {

/// "epoch 1" for the first.
std::string epochName(std::size_t index);

/// The amount by which an epoch moves the surface, as far as it can be told beforehand, in millimetres; nothing for
/// smoothing, where it depends on the curvature. Random offsets hardly exceed it.
std::optional<double> plannedDelta(const SessionPlan& plan, const PlannedEpoch& planned);

}  // namespace talvek::host
