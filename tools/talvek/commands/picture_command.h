// talvek picture: a picture of a weathered stone.
#pragma once

#include "talvek/commands/command_set.h"

namespace talvek::host {

/// Draws the surface of an epoch, coloured by its change, into a PNG file.
void addPictureCommand(CommandSet& commands);

}  // namespace talvek::host
