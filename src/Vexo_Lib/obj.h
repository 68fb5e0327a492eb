// Wavefront OBJ text: triangles, vertex positions and texels are read; everything the library writes is OBJ.
#pragma once

#include <memory>
#include <span>
#include <string>

#include "mesh/object3d.h"

namespace talvek {

/// Reads an OBJ file as a stream of tokens: "v", "vt" and "f" start a record wherever they stand, all other tokens are
/// passed over. Faces keep their first three corners. Indices are not checked. The flag has no effect.
/// Returns null when the file cannot be opened or read to its end, or there is no memory for it.
std::unique_ptr<Object3D> ReadObjFile(const char* path, bool flag);

/// Writes positions with 5 decimals and faces, the counts behind them in comments. Returns whether the file is
/// complete; without that there is no file, or still the old one. Throws std::bad_alloc.
bool WriteObjFile(const Object3D& mesh, const char* path);

/// Writes positions and, where the mesh has them, vertex normals with 6 decimals, and faces, the counts before them in
/// comments. Returns as WriteObjFile does. Throws std::bad_alloc.
bool WriteObjFileWithNormals(const Object3D& mesh, const char* path);

/// The same for several files at once, each of which comes to be complete or not by itself. Returns whether all are.
bool writeObjFilesWithNormals(const Object3D& mesh, std::span<const std::string> paths);

}  // namespace talvek
