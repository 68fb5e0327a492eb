// Meshes as files, by their extension.
#pragma once

#include <string>

#include "mesh/object3d.h"

namespace talvek::host {

/// ".obj, .sas, ...": what is written.
std::string writtenExtensions();

/// Throws Failure unless a mesh made of `source` can be written as `path`: as a format that is written, not over its
/// source, and over another file only where that is allowed.
void requireWritableName(const std::string& source, const std::string& path, bool mayReplace);

/// Writes a mesh that has its normals. Throws Failure, a file of that name being as it was.
void exportMesh(const Object3D& mesh, const std::string& path);

}  // namespace talvek::host
