// PNG files, made without compression.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace talvek::test {

struct PngHeader {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::uint8_t bitDepth = 8;
    /// 0 grey, 2 red, green and blue, 3 palette, 6 with alpha.
    std::uint8_t colourType = 2;
};

/// A chunk with its length and its checksum.
std::string pngChunk(const std::string& type, const std::string& data);

/// A PNG of the header, a palette (three bytes an entry, none if empty) and the rows from the top, each of them begun
/// with its filter, 0.
std::string pngBytes(const PngHeader& header, const std::string& palette, const std::string& rows);

}  // namespace talvek::test
