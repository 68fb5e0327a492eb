// Operating mode "Mesh & Grain-Weaver Mineral Data": every vertex weathers as the mineral under it does.
#pragma once

#include "mesh/object3d.h"

namespace talvek {

/// Weathers a copy of the mesh through the session's epochs, every vertex by the factor of its mineral, and writes the
/// frames. Without a mineral map, or on a mesh without texture coordinates, the stone is homogeneous. Throws
/// std::bad_alloc.
void runMineralMesh(const Object3D& mesh);

}  // namespace talvek
