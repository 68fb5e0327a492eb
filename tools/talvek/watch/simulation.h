// The child process in which the library runs, from its order to its end.
#pragma once

#include "talvek/plan/prepared_run.h"
#include "talvek/plan/run_options.h"
#include "talvek/watch/frame_check.h"

namespace talvek::host {

/// The command with which this program starts itself for a run.
inline constexpr const char* kSessionCommand = "run-session";

/// Runs the library on the plan and checks every frame as soon as the next epoch begins; the last frame and the
/// surfaces are left to the caller. Returns the child's exit status. Throws Failure when the run is cancelled or cannot
/// go on.
int simulate(const PreparedRun& run, const RunOptions& options, FrameCheck& frames);

}  // namespace talvek::host
