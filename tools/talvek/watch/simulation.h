// The child process in which the library runs, from its order to its end.
#pragma once

#include <functional>

#include "talvek/plan/prepared_run.h"
#include "talvek/plan/run_options.h"
#include "talvek/watch/frame_check.h"

namespace talvek::host {

/// The command with which this program starts itself for a run.
inline constexpr const char* kSessionCommand = "run-session";

/// Runs the library on the plan and calls `takeFrame` with a frame's number as soon as the next epoch begins, when the
/// frame should be complete; the last one is left to the caller. Returns the child's exit status. Throws Failure when
/// the run is cancelled or cannot go on.
int simulate(const PreparedRun& run, const RunOptions& options, const FrameCheck& frames,
             const std::function<void(std::int32_t number)>& takeFrame);

}  // namespace talvek::host
