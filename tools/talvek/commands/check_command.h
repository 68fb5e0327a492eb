// talvek check: why a mesh does not load, or will not weather well.
#pragma once

#include <string>

namespace talvek::host {

/// Prints a sentence for each thing that is found. Returns kExitDone when there is none, kExitFindings when the mesh
/// loads all the same, kExitMesh when it does not; throws Failure for a file that cannot be read at all.
int checkCommand(const std::string& path);

}  // namespace talvek::host
