// talvek convert: a mesh from one format into another.
#pragma once

#include <string>

namespace talvek::host {

/// Reads `from` in any format the library reads, or PLY, and writes `to` as OBJ, SAS or PLY, by its extension. Returns
/// the exit status; throws Failure.
int convertCommand(const std::string& from, const std::string& to);

}  // namespace talvek::host
