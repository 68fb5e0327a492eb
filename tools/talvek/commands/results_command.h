// talvek results: what a run has done to a surface, in figures.
#pragma once

#include "talvek/commands/command_set.h"

namespace talvek::host {

/// Prints the figures of each epoch as a table, CSV or JSON.
void addResultsCommand(CommandSet& commands);

}  // namespace talvek::host
