// The compact binary mesh: counts, arrays as they lie in memory, an optional texture section. Never written.
#pragma once

#include <memory>

#include "mesh/object3d.h"

namespace talvek {

/// Reads a BIN file: vertex count, face count, positions, faces, a label of 20 bytes whose last one tells how texels
/// follow, if they do. What the file does not hold is 0; indices are not checked. Returns null, after a report on
/// standard error, when the file cannot be opened or its counts cannot be true.
std::unique_ptr<Object3D> ReadBinFile(const char* path);

}  // namespace talvek
