// Whether coordinates can hold what the epochs of a run make of them.
#pragma once

#include "talvek/plan/session_plan.h"

namespace talvek::host {

/// Throws Failure for epochs that would move the surface by no finite amount, one by one or together.
void requireFiniteDeltas(const SessionPlan& plan);

}  // namespace talvek::host
