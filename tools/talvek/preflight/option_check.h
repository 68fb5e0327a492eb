// Whether the options and the parameter file of a run belong to its mode and model.
#pragma once

#include <string>
#include <vector>

#include "talvek/plan/run_options.h"
#include "talvek/plan/session_plan.h"

namespace talvek::host {

/// Throws Failure unless mode and model belong together and the options are those of the mode.
void requireDefinedPair(const SessionPlan& plan, const RunOptions& options);

/// Warnings about a mode and a model that the parameter file asks for and the library takes for others.
std::vector<std::string> replacedChoices(const SessionPlan& plan, const RunOptions& options);

}  // namespace talvek::host
