// All that can be looked into before a run.
#pragma once

#include "talvek/plan/prepared_run.h"
#include "talvek/plan/run_options.h"

namespace talvek::host {

/// Warns of what is doubtful. Writes nothing. Throws Failure for a run that could not work.
PreparedRun prepareRun(const RunOptions& options, const SessionPlan& plan);

}  // namespace talvek::host
