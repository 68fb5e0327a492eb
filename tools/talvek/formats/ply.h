// PLY files, for other mesh programs.
#pragma once

#include <string>

#include "mesh/object3d.h"
#include "talvek/formats/imported_mesh.h"
#include "talvek/formats/mesh_input.h"

namespace talvek::host {

/// Reads vertices with their colours, faces, texture coordinates by vertex or by corner, and the names of the pictures;
/// what else the head declares is passed over. Throws Failure with the reason when the file cannot be read.
ImportedMesh readPly(MeshInput& input);

/// Writes little-endian binary PLY: positions and normals, texture coordinates by vertex where there is one for each,
/// else by face corner. The mesh has vertex normals. Returns whether the file is complete; without that the old one, if
/// any, is untouched. Throws std::bad_alloc.
bool writePly(const Object3D& mesh, const std::string& path);

/// Whether every corner's texel has the number of its vertex.
bool hasTexelPerVertex(const Object3D& mesh);

}  // namespace talvek::host
