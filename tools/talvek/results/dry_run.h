// What a run would do.
#pragma once

#include "talvek/plan/prepared_run.h"

namespace talvek::host {

/// Prints the plan, the room that the run needs, and about how long it will take.
void printDryRun(const PreparedRun& run);

}  // namespace talvek::host
