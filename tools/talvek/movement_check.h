// How far the epochs of a run will move the surface, and whether its coordinates can hold that.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "mesh/object3d.h"
#include "talvek/session_plan.h"

namespace talvek::host {

/// The amount by which an epoch moves the surface, as far as it can be told beforehand, in millimetres; nothing for
/// smoothing, where it depends on the curvature. Random offsets hardly exceed it.
std::optional<double> plannedDelta(const SessionPlan& plan, const PlannedEpoch& epoch);

/// Throws Failure for epochs that would move the surface by no finite amount, one by one or together.
void requireFiniteDeltas(const SessionPlan& plan);

/// Warnings about epochs that move nothing, and about those whose movement is lost in the rounding of the mesh's
/// coordinates.
std::vector<std::string> movementWarnings(const SessionPlan& plan, const Object3D& mesh);

}  // namespace talvek::host
