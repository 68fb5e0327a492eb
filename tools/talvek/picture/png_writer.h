// Pictures as PNG files.
#pragma once

#include <string>

#include "talvek/picture/image.h"

namespace talvek::host {

/// The bytes of a PNG file of 8 bits a channel. Throws std::bad_alloc.
std::string pngOf(const Image& image);

/// Throws Failure when the file cannot be written; an old one is then untouched.
void writePng(const Image& image, const std::string& path);

}  // namespace talvek::host
