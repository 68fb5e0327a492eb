// Pictures for the cases with mineral maps.
#pragma once

#include "support/test_files.h"

namespace talvek::test {

/// Maps of 4 x 4 pixels, white below and grey above:
///   rows.bmp          as the library reads it
///   topdown.bmp       with the top row first; bits32.bmp: 32 bits per pixel, alpha 0; core.bmp: the oldest header
///   alpha.png         with alpha, 0 all over; palette.png, deep.png: with a palette, with 16 bits per channel
/// And others:
///   mono.bmp          black and white, 1 bit per pixel: white
///   cut.bmp           rows.bmp without its end; cut8.bmp: the same of a map of 8 bits per pixel; rle.bmp: compressed
///   cut.png, crc.png  half.png without its end, half.png with a changed byte; huge.png: more pixels than fit
///   photo.jpg         the beginning of a JPEG
/// And meshes with such maps beside them: top.obj (topdown.bmp), bits.obj (bits32.bmp), mono.obj, cutmap.obj (cut.bmp),
/// pngmap.obj (a PNG under the bitmap's name), folder.obj (a folder under the bitmap's name).
void writeMapFixtures(const TempFolder& folder);

}  // namespace talvek::test
