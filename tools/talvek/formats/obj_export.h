// OBJ files that lose nothing of a mesh: every digit of its coordinates, and its texture coordinates.
#pragma once

#include <string>

#include "mesh/object3d.h"

namespace talvek::host {

/// Writes positions, texture coordinates and faces so that reading them gives the same mesh. Returns whether the file
/// is complete; without that the old one, if any, is untouched. Throws std::bad_alloc.
bool writeObjExport(const Object3D& mesh, const std::string& path);

}  // namespace talvek::host
