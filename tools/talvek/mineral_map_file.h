// The mineral map beside a mesh.
#pragma once

#include <string>

namespace talvek::host {

/// Puts a picture where the library looks for the mesh's mineral map, converted if need be, and says so. A map that
/// stands there already and differs is replaced only if `mayReplace`. Throws Failure.
void placeMineralMap(const std::string& from, const std::string& map, bool mayReplace);

/// Throws Failure unless the map is there, readable and shows at least one mineral. Warns of colours that stand for
/// none.
void requireUsableMap(const std::string& map);

}  // namespace talvek::host
