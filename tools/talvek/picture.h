// Pictures from other programs, and the one kind of bitmap that a mineral map has to be.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace talvek::host {

struct Picture {
    int width = 0;
    int height = 0;
    /// Three bytes for each pixel, red first; the top row first.
    std::vector<std::uint8_t> colours;
};

/// Decodes a PNG or BMP file's bytes. Throws Failure, its message beginning with `name`.
Picture decodePicture(std::string_view bytes, const std::string& name);

/// Whether the bytes begin as an uncompressed bitmap of 24 bits per pixel with its bottom row first, which needs no
/// conversion.
bool isPlainBitmap(std::string_view bytes);

/// The picture as such a bitmap.
std::string plainBitmap(const Picture& picture);

}  // namespace talvek::host
