// The mesh of a run, looked through before it is weathered.
#pragma once

#include <memory>
#include <string>

#include "mesh/object3d.h"

namespace talvek::host {

/// Reads a mesh as the library does, with its normals. Throws Failure where it does not load, and where its reader
/// leaves out a part of the file or takes it otherwise than meant; with `acceptsLoss` the latter is a warning.
std::unique_ptr<Object3D> takeMesh(const std::string& path, bool acceptsLoss);

}  // namespace talvek::host
