// The versioned binary mesh.
#pragma once

#include <memory>

#include "mesh/object3d.h"

namespace talvek {

/// Reads a SAS file of any version. A file of version 7777 is replaced by its version 7778 form if it is exactly as
/// long as its header promises and all its faces name vertices that are there; anything else may be a damaged header in
/// front of a whole scan. Only the very file that was read is replaced, and it keeps its owner and permissions. What
/// the file does not hold is 0; indices are not checked. Returns null for an unknown version and, after a report on
/// standard error, for a file that cannot be opened or whose counts cannot be true.
std::unique_ptr<Object3D> LoadSasFile(const char* path);

/// Reads a SAS file of any version without touching it. Returns null as LoadSasFile does.
std::unique_ptr<Object3D> readSasFile(const char* path);

/// Reads a file of version 7777 without touching it. Returns null as LoadSasFile does, and for every other version.
std::unique_ptr<Object3D> ReadLegacySasFile(const char* path);

/// Writes a mesh as version 7778, 7779 or 7780: without texels, with one for each vertex, with a texel index. Arrays
/// that the mesh does not have are written as zeros. Returns whether the file is complete and on the disk; if not, the
/// old one, if any, is untouched and a report has been made on standard error. Throws std::bad_alloc.
bool WriteSasFile(const char* path, const Object3D& mesh);

}  // namespace talvek
