// talvek run: weathers a mesh in a child process and looks after it from beginning to end.
#pragma once

#include "talvek/commands/command_set.h"

namespace talvek::host {

/// Checks, runs, checks again and says what came out. Adds the command, too, with which the program starts itself.
void addRunCommands(CommandSet& commands);

}  // namespace talvek::host
