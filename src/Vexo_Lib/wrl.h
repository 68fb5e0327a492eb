// VRML text: a mesh is picked out of a stream of tokens, the scene around it is passed over.
#pragma once

#include <memory>

#include "mesh/object3d.h"

namespace talvek {

/// Reads the number lists behind "Coordinate", "coordIndex", "TextureCoordinate", "texCoordIndex" and "Color", wherever
/// these words stand, and the texture's name into the label. Polygons become fans of triangles. Of several lists of a
/// kind the last one counts, except that the vertex count stays as the first list of coordinates or colours set it.
/// Arrays that are shorter than the counts say are filled up: positions and colours with 0, texel indices with -1.
/// Indices are not checked. The flag has no effect.
/// Reports what it found on standard error. Returns null, after a report, when the file cannot be opened, has no vertex
/// or no face, or is too large for the memory there is.
std::unique_ptr<Object3D> ReadWrlFile(const char* path, bool flag);

}  // namespace talvek
