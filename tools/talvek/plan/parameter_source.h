// What a parameter file says about a run.
#pragma once

#include "talvek/plan/run_options.h"
#include "talvek/plan/session_plan.h"

namespace talvek::host {

/// Reads the parameter file of the options strictly. Throws Failure, naming the line, for what is no statement of a
/// parameter file, for a mode, a model or days that there cannot be, and for what is missing and not given by the
/// options either. Warns of a material that takes its default.
SessionPlan readParameters(const PlanOptions& options);

}  // namespace talvek::host
