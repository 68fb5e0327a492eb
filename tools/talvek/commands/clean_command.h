// talvek clean: a mesh without what stands in the way of weathering.
#pragma once

#include "talvek/commands/command_set.h"

namespace talvek::host {

/// Reads a mesh, removes what is asked for and writes it under another name. Says what it has done.
void addCleanCommand(CommandSet& commands);

}  // namespace talvek::host
