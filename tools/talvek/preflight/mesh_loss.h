// What a run would lose of its mesh.
#pragma once

#include <string>

#include "talvek/inspect/mesh_intake.h"

namespace talvek::host {

/// Reads the mesh of a run. Throws Failure where it does not load, and where a part of the file is left out or taken
/// otherwise than meant; with `acceptsLoss` the latter is a warning.
EngineMesh takeMesh(const std::string& path, const ImportOptions& options, bool acceptsLoss);

}  // namespace talvek::host
