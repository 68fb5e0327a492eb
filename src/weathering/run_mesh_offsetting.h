// Operating mode "Mesh Offsetting": the surface moves by prescribed amounts.
#pragma once

#include "mesh/object3d.h"

namespace talvek {

/// Moves a copy of the mesh through the session's epochs, by a constant offset, by random offsets or by the mean
/// curvature, and writes the frames. Throws the text of a message as const char* for a mesh whose curvature cannot be
/// computed, whatever the model; throws std::bad_alloc.
void runMeshOffsetting(const Object3D& mesh);

}  // namespace talvek
