// talvek compare: how far one surface lies from another.
#pragma once

#include "talvek/commands/command_set.h"

namespace talvek::host {

/// Measures the distance of each vertex of one mesh to the surface of another.
void addCompareCommand(CommandSet& commands);

}  // namespace talvek::host
