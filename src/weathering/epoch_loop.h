// The way of a mesh's own vertices through the epochs.
#pragma once

#include <functional>

#include "api/session/parameters.h"
#include "mesh/object3d.h"

namespace talvek {

/// Moves the vertices of a surface by what an epoch does to them, having reported it.
using EpochMove = std::function<void(Object3D& surface, const EpochRecord& epoch)>;

/// Takes a surface, which has to have vertex normals, through the session's epochs and writes a frame after each. The
/// frame of the last epoch is written as the last surface too; without an epoch that is the surface as it is. Throws
/// what `move` throws and std::bad_alloc.
void weatherThroughEpochs(Object3D& surface, const EpochMove& move);

}  // namespace talvek
