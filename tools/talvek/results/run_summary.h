// What is said about a run when it is over.
#pragma once

#include "talvek/plan/prepared_run.h"

namespace talvek::host {

/// Prints what there is, how far the surface has moved, and what is to be known about it. Throws Failure when no vertex
/// of the last surface has a finite position.
void printSummary(const PreparedRun& run);

}  // namespace talvek::host
