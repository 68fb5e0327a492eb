// Looks through a VRML file for the parts of the scene that its reader leaves out.
#pragma once

#include <string>

#include "talvek/inspect/findings.h"

namespace talvek::host {

/// Finds lists of faces that later ones replace, shapes that are not made of faces, and what the reader passes over
/// though it changes the surface. A file that the reader would report of without end is fatal.
void checkWrlFile(const std::string& path, Findings& findings);

}  // namespace talvek::host
