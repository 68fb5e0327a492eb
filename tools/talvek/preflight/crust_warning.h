// Crusts begin anew in every epoch.
#pragma once

#include <string>

#include "talvek/plan/session_plan.h"

namespace talvek::host {

/// The crust models take the stone to be bare when an epoch begins, so that several epochs give more than one of the
/// same length in all. A warning where the plan has several, empty otherwise.
std::string crustWarning(const SessionPlan& plan);

}  // namespace talvek::host
