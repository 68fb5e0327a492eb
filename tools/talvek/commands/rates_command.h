// talvek rates: how far the epochs of a plan move a surface, without any mesh.
#pragma once

#include "talvek/commands/command_set.h"

namespace talvek::host {

void addRatesCommand(CommandSet& commands);

}  // namespace talvek::host
