// A mesh of any format on its way to the simulation, looked through for what is lost on it.
#pragma once

#include <string>

#include "talvek/formats/engine_mesh.h"
#include "talvek/inspect/findings.h"

namespace talvek::host {

struct InspectedMesh {
    /// Without a mesh where none loads; then there is a finding that says why.
    EngineMesh engine;
    Findings findings;
};

/// Reads a mesh as the library does, where it reads the file whole and no option changes it, and otherwise imports it.
/// What the library would leave out of a file and importing keeps is no finding. Throws Failure for a file that cannot
/// be imported and is none of the library's.
InspectedMesh inspectMesh(const std::string& path, const ImportOptions& options);

}  // namespace talvek::host
