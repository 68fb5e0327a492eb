// talvek export: a run in the form that another program wants.
#pragma once

#include "talvek/commands/command_set.h"

namespace talvek::host {

/// Writes the surfaces of a run, or their figures, for other programs.
void addExportCommand(CommandSet& commands);

}  // namespace talvek::host
