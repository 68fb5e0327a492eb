// From options, and the parameter file they may name, to the one plan of a run.
#pragma once

#include "talvek/plan/run_options.h"
#include "talvek/plan/session_plan.h"

namespace talvek::host {

/// Throws Failure where the options do not go together or a parameter file cannot be used.
SessionPlan makePlan(const PlanOptions& options);

}  // namespace talvek::host
