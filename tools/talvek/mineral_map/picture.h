// Pictures from other programs.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace talvek::host {

inline constexpr std::size_t kColours = 3;

struct Picture {
    int width = 0;
    int height = 0;
    /// Three bytes for each pixel, red first; the top row first.
    std::vector<std::uint8_t> colours;
};

/// Decodes a PNG or BMP file's bytes; transparency is left out. Throws Failure, its message beginning with `name`.
Picture decodePicture(std::string_view bytes, const std::string& name);

}  // namespace talvek::host
