// What a parameter file holds, read by the library's own code.
#pragma once

#include <string>

#include "talvek/plan/session_plan.h"

namespace talvek::host {

/// Throws Failure when the file cannot be opened or read.
SessionPlan readParameters(const std::string& path);

}  // namespace talvek::host
