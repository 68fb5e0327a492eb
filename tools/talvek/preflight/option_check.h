// Whether the options and the parameter file of a run belong to its mode and model.
#pragma once

#include "talvek/plan/run_options.h"
#include "talvek/plan/session_plan.h"

namespace talvek::host {

/// Throws Failure unless mode and model belong together and the options are those of the mode.
void requireDefinedPair(const SessionPlan& plan, const RunOptions& options);

}  // namespace talvek::host
