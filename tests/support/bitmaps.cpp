#include "support/bitmaps.h"

namespace talvek::test {

namespace {

void appendLittleEndian(std::string& bytes, std::uint32_t value, int size) {
    for (int i = 0; i < size; ++i) {
        bytes += static_cast<char>(value >> (8 * i));
    }
}

}  // namespace

std::string bitmapBytes(const Bitmap& bitmap) {
    std::string bytes = bitmap.signature;
    appendLittleEndian(bytes, static_cast<std::uint32_t>(54 + bitmap.gap.size() + bitmap.pixels.size()), 4);
    appendLittleEndian(bytes, 0, 4);
    appendLittleEndian(bytes, bitmap.pixelOffset, 4);
    appendLittleEndian(bytes, 40, 4);
    appendLittleEndian(bytes, static_cast<std::uint32_t>(bitmap.width), 4);
    appendLittleEndian(bytes, static_cast<std::uint32_t>(bitmap.height), 4);
    appendLittleEndian(bytes, 1, 2);
    appendLittleEndian(bytes, bitmap.bitsPerPixel, 2);
    appendLittleEndian(bytes, 0, 4);
    appendLittleEndian(bytes, bitmap.imageSize, 4);
    bytes.append(16, '\0');
    return bytes + bitmap.gap + bitmap.pixels;
}

Bitmap paintedBitmap(std::int32_t width, std::int32_t height, const std::function<Color(int x, int y)>& colorAt) {
    Bitmap bitmap;
    bitmap.width = width;
    bitmap.height = height;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const Color color = colorAt(x, y);
            bitmap.pixels +=
                {static_cast<char>(color.blue), static_cast<char>(color.green), static_cast<char>(color.red)};
        }
        // Padding that a reader must not take for colours.
        bitmap.pixels.append((4 - bitmap.pixels.size() % 4) % 4, '\x55');
    }
    bitmap.imageSize = static_cast<std::uint32_t>(bitmap.pixels.size());
    return bitmap;
}

Bitmap plainBitmap(std::int32_t width, std::int32_t height, const Color& color) {
    return paintedBitmap(width, height, [&color](int, int) { return color; });
}

Bitmap patchyBitmap() {
    constexpr Color kColors[] = {{255, 255, 255}, {128, 128, 128}, {0, 0, 255},
                                 {0, 192, 0},     {1, 2, 3},       {255, 128, 128}};
    return paintedBitmap(61, 47, [&kColors](int x, int y) { return kColors[(x * x + 3 * y + x * y / 7) % 6]; });
}

}  // namespace talvek::test
