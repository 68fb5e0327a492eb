// Reading a mesh for inspection: the library's readers, none of which changes the file here.
#pragma once

#include <memory>
#include <string>

#include "mesh/object3d.h"

namespace talvek::host {

/// ".obj" of "Stone.OBJ"; empty where there is none.
std::string lowerCaseExtension(const std::string& path);

/// Reads and completes a mesh: as a run would, or from a PLY file, which no run reads. Throws Failure with the reason
/// when there is none.
std::unique_ptr<Object3D> readMesh(const std::string& path);

}  // namespace talvek::host
