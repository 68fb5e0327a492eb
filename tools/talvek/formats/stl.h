// STL files: triangles without a word of which of them share a corner.
#pragma once

#include <string>

#include "mesh/object3d.h"
#include "talvek/formats/imported_mesh.h"
#include "talvek/formats/mesh_input.h"

namespace talvek::host {

/// Reads text or bytes, whichever it is by its content, and joins corners with equal coordinates. Throws Failure.
ImportedMesh readStl(MeshInput& input);

/// Writes little-endian binary STL. Returns whether the file is complete; without that the old one, if any, is
/// untouched. Throws std::bad_alloc.
bool writeStl(const Object3D& mesh, const std::string& path);

}  // namespace talvek::host
