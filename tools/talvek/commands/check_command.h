// talvek check: why a mesh does not load, or will not weather well.
#pragma once

#include "talvek/commands/command_set.h"

namespace talvek::host {

/// Prints a sentence for each thing that is found. Ends with kExitDone when there is none, kExitFindings when the mesh
/// loads all the same, kExitMesh when it does not or cannot be read at all.
void addCheckCommand(CommandSet& commands);

}  // namespace talvek::host
