#include "talvek/mineral_map/bitmap_file.h"

#include <optional>

namespace talvek::host {

namespace {

constexpr std::size_t kFileHeaderSize = 14;
/// The oldest information header, whose sizes have two bytes, and the one that all later ones begin with.
constexpr std::uint32_t kCoreSize = 12;
constexpr std::uint32_t kInformationSize = 40;
constexpr std::uint32_t kBitsPerPixel = 24;
static_assert(kBitmapHeadersSize == kFileHeaderSize + kInformationSize);

struct BitmapHeader {
    std::uint32_t pixelsAt = 0;
    std::uint32_t informationSize = 0;
    std::uint32_t width = 0;
    std::int64_t height = 0;
    std::uint32_t bitsPerPixel = 0;
    std::uint32_t compression = 0;
};

std::uint32_t littleEndian(std::string_view bytes, std::size_t at, int size) {
    std::uint32_t value = 0;
    for (int i = size - 1; i >= 0; --i) {
        value = value << 8 | static_cast<unsigned char>(bytes[at + static_cast<std::size_t>(i)]);
    }
    return value;
}

std::optional<BitmapHeader> headerOf(std::string_view bytes) {
    if (bytes.size() < kFileHeaderSize + kCoreSize) {
        return {};
    }
    BitmapHeader header{.pixelsAt = littleEndian(bytes, 10, 4), .informationSize = littleEndian(bytes, 14, 4)};
    if (header.informationSize == kCoreSize) {
        header.width = littleEndian(bytes, 18, 2);
        header.height = littleEndian(bytes, 20, 2);
        header.bitsPerPixel = littleEndian(bytes, 24, 2);
        return header;
    }
    if (bytes.size() < kBitmapHeadersSize) {
        return {};
    }
    header.width = littleEndian(bytes, 18, 4);
    header.height = static_cast<std::int32_t>(littleEndian(bytes, 22, 4));
    header.bitsPerPixel = littleEndian(bytes, 28, 2);
    header.compression = littleEndian(bytes, 30, 4);
    return header;
}

void append(std::string& bytes, std::uint32_t value, int size) {
    for (int i = 0; i < size; ++i) {
        bytes += static_cast<char>(value >> (8 * i) & 0xFF);
    }
}

/// The two headers of a bitmap, up to its pixels.
std::string bitmapHeaders(const Picture& picture, std::uint32_t imageSize) {
    std::string bytes = "BM";
    append(bytes, static_cast<std::uint32_t>(kBitmapHeadersSize) + imageSize, 4);
    append(bytes, 0, 4);
    append(bytes, kBitmapHeadersSize, 4);
    append(bytes, kInformationSize, 4);
    append(bytes, static_cast<std::uint32_t>(picture.width), 4);
    append(bytes, static_cast<std::uint32_t>(picture.height), 4);
    append(bytes, 1, 2);
    append(bytes, kBitsPerPixel, 2);
    append(bytes, 0, 4);
    append(bytes, imageSize, 4);
    bytes.append(kBitmapHeadersSize - bytes.size(), '\0');
    return bytes;
}

}  // namespace

BitmapKind bitmapKindOf(std::string_view bytes) {
    if (!bytes.starts_with("BM")) {
        return BitmapKind::kNone;
    }
    const std::optional<BitmapHeader> header = headerOf(bytes);
    const bool isRead = header && header->informationSize >= kInformationSize &&
                        header->bitsPerPixel == kBitsPerPixel && header->compression == 0;
    if (!isRead) {
        return BitmapKind::kOther;
    }
    return header->height < 0 ? BitmapKind::kTopDown : BitmapKind::kPlain;
}

bool isCutBitmap(std::string_view bytes) {
    // Beyond this no picture is decoded.
    constexpr std::int64_t kLargestSide = 1 << 24;
    constexpr std::uint32_t kBitFields = 3;
    const std::optional<BitmapHeader> header = headerOf(bytes);
    if (!header) {
        return true;
    }
    const std::int64_t height = header->height < 0 ? -header->height : header->height;
    const bool isCompressed = header->compression != 0 && header->compression != kBitFields;
    if (isCompressed || header->width > kLargestSide || height > kLargestSide || height == 0) {
        return false;
    }
    const std::uint64_t rowBits = std::uint64_t{header->width} * header->bitsPerPixel;
    // The padding of the last row may be missing.
    const std::uint64_t pixelBytes =
        (rowBits + 31) / 32 * 4 * static_cast<std::uint64_t>(height - 1) + (rowBits + 7) / 8;
    return bytes.size() < header->pixelsAt + pixelBytes;
}

std::string plainBitmap(const Picture& picture) {
    const std::size_t rowSize = kColours * static_cast<std::size_t>(picture.width);
    const std::size_t paddedSize = (rowSize + 3) / 4 * 4;
    const std::size_t imageSize = paddedSize * static_cast<std::size_t>(picture.height);
    std::string bytes = bitmapHeaders(picture, static_cast<std::uint32_t>(imageSize));
    bytes.reserve(bytes.size() + imageSize);
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
