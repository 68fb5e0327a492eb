// OFF files: text with the vertices first, then polygons.
#pragma once

#include "talvek/formats/imported_mesh.h"
#include "talvek/formats/mesh_input.h"

namespace talvek::host {

/// Reads OFF with the colours, normals and texture coordinates that its first line announces (COFF, NOFF, STOFF and so
/// on). Throws Failure.
ImportedMesh readOff(MeshInput& input);

}  // namespace talvek::host
