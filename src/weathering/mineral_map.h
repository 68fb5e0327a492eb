// The picture of a stone's minerals: a Windows bitmap laid on the mesh by its texture coordinates.
#pragma once

#include <memory>

#include "base/float_image.h"

namespace talvek {

/// Row 0 is the first row of the file, which is the bottom of most bitmaps. A 24-bit bitmap has three channels: blue,
/// green and red, 0 to 255. One of 8 bits or fewer has one channel: the number of the colour.
using MineralMap = FloatImage;

/// Reads an uncompressed bitmap. Bitmaps of other than one or three bytes per pixel give a map of zeros. Returns null
/// for a file that cannot be opened, is no bitmap, ends early or whose header cannot be true, and without memory for
/// its bytes. Throws std::bad_alloc without memory for the map.
std::unique_ptr<MineralMap> readMineralMap(const char* fileName);

}  // namespace talvek
