// talvek verify: whether the files of a run are still those that it read and wrote.
#pragma once

#include "talvek/commands/command_set.h"

namespace talvek::host {

void addVerifyCommand(CommandSet& commands);

}  // namespace talvek::host
