// How much room the frames of a run take on the disk.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "mesh/object3d.h"

namespace talvek::host {

/// The bytes of a mesh as a frame, as close as can be told before it moves: digits may be added or lost on the way.
std::uint64_t frameBytes(const Object3D& mesh);

/// The bytes of a frame on the grid of mode 2, from the part of texture space that the mesh covers.
std::uint64_t gridFrameBytes(const Object3D& mesh);

/// The bytes that the disk has to have free for these files of `bytesEach`. Every file is written beside the one it
/// replaces, so the room of a replaced file becomes free only afterwards.
std::uint64_t roomNeeded(const std::vector<std::string>& names, std::uint64_t bytesEach);

}  // namespace talvek::host
