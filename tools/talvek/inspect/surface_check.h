// What of a mesh's surface will not weather well.
#pragma once

#include "mesh/object3d.h"
#include "talvek/inspect/findings.h"

namespace talvek::host {

/// Every vertex index has to lie in [0, V), and the mesh has its normals.
void checkSurface(const Object3D& mesh, Findings& findings);

}  // namespace talvek::host
