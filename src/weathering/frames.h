// The files that a run leaves behind.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "mesh/object3d.h"

namespace talvek {

/// The name of frame n of a mesh file.
std::string frameFileName(std::string_view meshFileName, std::uint32_t frame);

/// Announces and writes the frame of an epoch of the session; twice when the results flag is set. The frame of the last
/// epoch is written as the last surface too. A file that cannot be written is absent. Throws std::bad_alloc.
void saveFrame(const Object3D& surface, std::int32_t epoch);

/// Writes the frame of an epoch alone, without the announcement.
void writeFrame(const Object3D& surface, std::int32_t epoch);

/// Writes the first surface, under the results flag as frame 0 too. Without an epoch it is the last one as well.
void writeFirstSurface(const Object3D& mesh);

/// Writes the first surface and the last one.
void writeSummary(const Object3D& first, const Object3D& last);

}  // namespace talvek
