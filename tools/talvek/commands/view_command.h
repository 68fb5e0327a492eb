// talvek view: a run as one page that any browser opens.
#pragma once

#include <string>

#include "talvek/commands/command_set.h"

namespace talvek::host {

void addViewCommand(CommandSet& commands);

}  // namespace talvek::host
