// A mesh in one of the library's formats, read as the library reads it and looked through for what that loses.
#pragma once

#include <memory>
#include <string>

#include "mesh/object3d.h"
#include "talvek/inspect/findings.h"

namespace talvek::host {

/// Reads a file that can be opened. Null, after a finding that says why, where the mesh does not load; otherwise it has
/// its normals.
std::unique_ptr<Object3D> inspectNativeMesh(const std::string& path, Findings& findings);

/// Finds vertices that are not finite, and the faces that hang on them.
void checkPositions(const Object3D& mesh, Findings& findings);

}  // namespace talvek::host
