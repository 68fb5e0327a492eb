// Looks through the text of an OBJ file for what its reader takes otherwise than meant.
#pragma once

#include <string>

#include "mesh/object3d.h"
#include "talvek/inspect/findings.h"

namespace talvek::host {

/// Finds faces with more or less than three corners, indices that name no vertex, records without their numbers, and
/// words that are taken for the beginning of a record. `mesh` is what the reader made of the file.
void checkObjFile(const std::string& path, const Object3D& mesh, Findings& findings);

}  // namespace talvek::host
