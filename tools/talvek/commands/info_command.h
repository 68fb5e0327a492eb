// talvek info: what a mesh consists of.
#pragma once

#include <string>

namespace talvek::host {

/// Prints a survey of the mesh, as text or as one JSON object. Returns the exit status; throws Failure.
int infoCommand(const std::string& path, bool asJson);

}  // namespace talvek::host
