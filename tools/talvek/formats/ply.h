// PLY files, for other mesh programs.
#pragma once

#include <memory>
#include <string>

#include "mesh/object3d.h"

namespace talvek::host {

/// Reads the vertices, the faces and the texture coordinates of a PLY file, text or little-endian binary. Polygons
/// become fans of triangles. Indices are not checked. Throws Failure with the reason when the file cannot be read.
std::unique_ptr<Object3D> readPly(const std::string& path);

/// Writes little-endian binary PLY: positions and normals, texture coordinates by vertex where there is one for each,
/// else by face corner. The mesh has vertex normals. Returns whether the file is complete; without that the old one, if
/// any, is untouched. Throws std::bad_alloc.
bool writePly(const Object3D& mesh, const std::string& path);

/// Whether every corner's texel has the number of its vertex.
bool hasTexelPerVertex(const Object3D& mesh);

}  // namespace talvek::host
