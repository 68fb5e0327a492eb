// talvek convert: a mesh from one format into another.
#pragma once

#include "talvek/commands/command_set.h"

namespace talvek::host {

/// Reads a mesh in any format the library reads, or PLY, and writes it as OBJ, SAS or PLY, by its extension.
void addConvertCommand(CommandSet& commands);

}  // namespace talvek::host
