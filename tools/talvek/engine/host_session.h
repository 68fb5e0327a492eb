// The library as this program uses it: its exported functions and nothing else. What stands here runs in a child
// process, because the library reports to standard output and keeps its caller until a run is over.
#pragma once

#include "talvek/plan/run_options.h"

namespace talvek::host {

/// Sets the library's session up as the options say and prints the outcome as a SessionPlan. Returns the exit status.
int describeSession(const RunOptions& options);

/// Sets the session up in the same way, saves the parameters if asked to, and runs it. Returns the exit status.
int runSession(const RunOptions& options);

}  // namespace talvek::host
