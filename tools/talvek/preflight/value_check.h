// Whether the values of a run are ones that its quantities can have.
#pragma once

#include "talvek/plan/session_plan.h"

namespace talvek::host {

/// Throws Failure for a pH outside 0 to 14, and for rain, gases or a material below 0, wherever they come from.
void requirePossibleValues(const SessionPlan& plan);

}  // namespace talvek::host
