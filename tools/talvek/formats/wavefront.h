// OBJ files as other programs write them: polygons, indices that count from the end, materials, vertex colours.
#pragma once

#include "talvek/formats/imported_mesh.h"
#include "talvek/formats/mesh_input.h"

namespace talvek::host {

/// Reads the file's lines; the library's own reader knows no lines, and only triangles. All objects and groups become
/// one mesh. Throws Failure.
ImportedMesh readWavefront(MeshInput& input);

}  // namespace talvek::host
