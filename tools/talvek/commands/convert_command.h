// talvek convert: a mesh from one format into another.
#pragma once

#include "talvek/commands/command_set.h"

namespace talvek::host {

/// Reads a mesh in any format and writes it in another one, by its extension. A file that is there already is replaced
/// with --force only.
void addConvertCommand(CommandSet& commands);

}  // namespace talvek::host
