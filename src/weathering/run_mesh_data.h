// Operating mode "Mesh Data only": the stone is homogeneous.
#pragma once

#include "mesh/object3d.h"

namespace talvek {

/// Weathers a copy of the mesh through the session's epochs, every vertex by the same distance in each, and writes the
/// frames. Throws std::bad_alloc.
void runMeshData(const Object3D& mesh);

}  // namespace talvek
