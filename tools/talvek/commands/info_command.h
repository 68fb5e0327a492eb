// talvek info: what a mesh consists of.
#pragma once

#include "talvek/commands/command_set.h"

namespace talvek::host {

/// Prints a survey of the mesh, as text or as one JSON object.
void addInfoCommand(CommandSet& commands);

}  // namespace talvek::host
