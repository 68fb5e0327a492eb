// The surfaces that a run leaves behind, each in a file. A file that cannot be written is absent, and one that is an
// input of the session is left as it is.
#pragma once

#include <cstdint>

#include "mesh/object3d.h"

namespace talvek {

/// Writes the frame of an epoch of the session; twice when the results flag is set. Throws std::bad_alloc.
void writeFrame(const Object3D& surface, std::int32_t epoch);

/// Writes the frame of the last epoch, which is the last surface as well. Throws std::bad_alloc.
void writeLastFrame(const Object3D& surface, std::int32_t epoch);

/// Writes the surface that the run began with, under the results flag as frame 0 too. Throws std::bad_alloc.
void writeFirstSurface(const Object3D& mesh);

/// Writes the surface that the run ended with. Throws std::bad_alloc.
void writeLastSurface(const Object3D& surface);

}  // namespace talvek
