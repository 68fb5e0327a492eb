// Whether a mesh's size, its edges and the movement that is planned fit each other.
#pragma once

#include <string>

#include "mesh/object3d.h"
#include "talvek/plan/session_plan.h"

namespace talvek::host {

/// A warning about a mesh that may not be in millimetres, or that moves too far for its size or its edges; empty where
/// nothing is unusual. The mesh has its normals and its mean edge length.
std::string sizeWarning(const SessionPlan& plan, const Object3D& mesh);

}  // namespace talvek::host
