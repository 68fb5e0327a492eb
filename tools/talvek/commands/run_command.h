// talvek run: weathers a mesh in a child process and looks after it from beginning to end.
#pragma once

#include <string>
#include <vector>

#include "talvek/plan/run_options.h"

namespace talvek::host {

// The commands with which this program starts itself; they take the arguments of `run`.
inline constexpr const char* kDescribeCommand = "describe-session";
inline constexpr const char* kSessionCommand = "run-session";

/// Checks, runs, checks again and says what came out. `arguments` are those that `options` were read from. Returns the
/// exit status; throws Failure.
int runCommand(const RunOptions& options, const std::vector<std::string>& arguments);

}  // namespace talvek::host
