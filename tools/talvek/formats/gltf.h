// glTF and GLB files.
#pragma once

#include <string>

#include "mesh/object3d.h"
#include "talvek/formats/imported_mesh.h"
#include "talvek/formats/mesh_input.h"

namespace talvek::host {

/// Reads the triangles of all meshes of the scene where its nodes put them, in metres. Vertices that the format had to
/// split are one again, their texture coordinates kept by corner. Throws Failure.
ImportedMesh readGltf(MeshInput& input);

}  // namespace talvek::host
