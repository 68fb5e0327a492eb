// Bitmap files, sound and unsound.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace talvek::test {

/// A colour as bitmaps store it.
struct Color {
    std::uint8_t blue = 0;
    std::uint8_t green = 0;
    std::uint8_t red = 0;
};

inline constexpr Color kWhite = {255, 255, 255};
inline constexpr Color kGrey = {128, 128, 128};

/// A bitmap of two headers, a gap and pixel bytes, whatever these say.
struct Bitmap {
    std::string signature = "BM";
    std::uint32_t pixelOffset = 54;
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::uint16_t bitsPerPixel = 24;
    /// 0 leaves it to the reader.
    std::uint32_t imageSize = 0;
    /// What stands between the headers and the pixels.
    std::string gap;
    std::string pixels;
};

std::string bitmapBytes(const Bitmap& bitmap);

/// A 24-bit bitmap of the given colours, rows padded, image size stated. Row 0 is the first in the file.
Bitmap paintedBitmap(std::int32_t width, std::int32_t height, const std::function<Color(int x, int y)>& colorAt);

/// Patches of five minerals and of a colour that is none.
Bitmap patchyBitmap();

/// One colour all over.
Bitmap plainBitmap(std::int32_t width, std::int32_t height, const Color& color);

}  // namespace talvek::test
