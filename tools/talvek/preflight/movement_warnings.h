// Epochs that do not move the surface.
#pragma once

#include <string>
#include <vector>

#include "mesh/object3d.h"
#include "talvek/plan/session_plan.h"

namespace talvek::host {

/// Warnings about epochs that move nothing, and about those whose movement is lost in the rounding of the mesh's
/// coordinates.
std::vector<std::string> movementWarnings(const SessionPlan& plan, const Object3D& mesh);

}  // namespace talvek::host
