// talvek run: weathers a mesh in a child process and looks after it from beginning to end.
#pragma once

#include <string>
#include <vector>

#include "talvek/commands/command_set.h"

namespace talvek::host {

/// Checks, runs, checks again and says what came out. `arguments` are those of the program. Adds the commands, too,
/// with which the program starts itself.
void addRunCommands(CommandSet& commands, const std::vector<std::string>& arguments);

}  // namespace talvek::host
