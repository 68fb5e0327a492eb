#include "talvek/picture.h"

#include <limits>
#include <memory>

#include "talvek/exit_status.h"
#include "talvek/stb_settings.h"

namespace talvek::host {

namespace {

constexpr int kColours = 3;
constexpr std::size_t kFileHeaderSize = 14;
constexpr std::uint32_t kInformationSize = 40;
constexpr std::size_t kHeadersSize = kFileHeaderSize + kInformationSize;
constexpr std::uint32_t kBitsPerPixel = 24;

std::uint32_t littleEndian(std::string_view bytes, std::size_t at, int size) {
    std::uint32_t value = 0;
    for (int i = size - 1; i >= 0; --i) {
        value = value << 8 | static_cast<unsigned char>(bytes[at + static_cast<std::size_t>(i)]);
    }
    return value;
}

void append(std::string& bytes, std::uint32_t value, int size) {
    for (int i = 0; i < size; ++i) {
        bytes += static_cast<char>(value >> (8 * i) & 0xFF);
    }
}

/// The two headers of a bitmap, up to its pixels.
std::string bitmapHeaders(const Picture& picture, std::uint32_t imageSize) {
    std::string bytes = "BM";
    append(bytes, static_cast<std::uint32_t>(kHeadersSize) + imageSize, 4);
    append(bytes, 0, 4);
    append(bytes, kHeadersSize, 4);
    append(bytes, kInformationSize, 4);
    append(bytes, static_cast<std::uint32_t>(picture.width), 4);
    append(bytes, static_cast<std::uint32_t>(picture.height), 4);
    append(bytes, 1, 2);
    append(bytes, kBitsPerPixel, 2);
    append(bytes, 0, 4);
    append(bytes, imageSize, 4);
    bytes.append(kHeadersSize - bytes.size(), '\0');
    return bytes;
}

}  // namespace

Picture decodePicture(std::string_view bytes, const std::string& name) {
    Picture picture;
    int channels = 0;
    const auto size = bytes.size() <= std::numeric_limits<int>::max() ? static_cast<int>(bytes.size()) : 0;
    const std::unique_ptr<stbi_uc, void (*)(void*)> pixels(
        stbi_load_from_memory(reinterpret_cast<const stbi_uc*>(bytes.data()), size, &picture.width, &picture.height,
                              &channels, kColours),
        stbi_image_free);
    if (pixels == nullptr) {
        throw Failure(kExitRefused,
                      name + ": this is no PNG or BMP picture that can be read (" + stbi_failure_reason() + ")");
    }
    const std::size_t count =
        std::size_t{kColours} * static_cast<std::size_t>(picture.width) * static_cast<std::size_t>(picture.height);
    picture.colours.assign(pixels.get(), pixels.get() + count);
    return picture;
}

bool isPlainBitmap(std::string_view bytes) {
    return bytes.size() >= kHeadersSize && bytes.starts_with("BM") && littleEndian(bytes, 28, 2) == kBitsPerPixel &&
           littleEndian(bytes, 30, 4) == 0 && static_cast<std::int32_t>(littleEndian(bytes, 22, 4)) > 0;
}

std::string plainBitmap(const Picture& picture) {
    const auto rowSize = static_cast<std::size_t>(picture.width) * kColours;
    const std::size_t paddedSize = (rowSize + 3) / 4 * 4;
    std::string bytes =
        bitmapHeaders(picture, static_cast<std::uint32_t>(paddedSize * static_cast<std::size_t>(picture.height)));
    for (int row = picture.height - 1; row >= 0; --row) {
        const std::uint8_t* pixel = picture.colours.data() + static_cast<std::size_t>(row) * rowSize;
        for (int column = 0; column < picture.width; ++column, pixel += kColours) {
            bytes += static_cast<char>(pixel[2]);
            bytes += static_cast<char>(pixel[1]);
            bytes += static_cast<char>(pixel[0]);
        }
        bytes.append(paddedSize - rowSize, '\0');
    }
    return bytes;
}

}  // namespace talvek::host
