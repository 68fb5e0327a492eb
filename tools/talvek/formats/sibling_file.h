// Files that a mesh names: they stand beside it, or below.
#pragma once

#include <string>
#include <string_view>

namespace talvek::host {

/// The path of a file by the name that the mesh at `mesh` gives it; empty for names that lead elsewhere (from the root,
/// upwards, to another machine), which no mesh has a reason to give.
std::string siblingFile(const std::string& mesh, std::string_view name);

}  // namespace talvek::host
