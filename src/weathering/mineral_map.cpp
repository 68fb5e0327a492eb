#include "weathering/mineral_map.h"

#include <algorithm>
#include <array>
#include <limits>
#include <new>
#include <optional>

#include "base/input_file.h"
#include "base/little_endian.h"

namespace talvek {

namespace {

using Byte = unsigned char;

/// What a bitmap's headers say of its pixels.
struct BitmapHeader {
    std::int32_t width;
    std::int32_t height;
    std::int32_t bitsPerPixel;
    std::int64_t imageSize;
};

/// How the pixels stand in the file.
struct PixelLayout {
    std::int32_t width;
    std::int32_t height;
    std::int32_t channels;
    std::int64_t rowBytes;
    /// From the start of one row to the start of the next.
    std::int64_t rowStep;
    std::int64_t bytesToRead;
};

std::uint32_t unsigned16(const Byte* bytes) {
    return static_cast<std::uint32_t>(bytes[0] | bytes[1] << 8);
}

bool skipBytes(InputFile& file, std::int64_t count) {
    std::array<char, 4096> dropped;
    while (count > 0) {
        const std::size_t piece = std::min(dropped.size(), static_cast<std::size_t>(count));
        if (file.read(dropped.data(), piece) < piece) {
            return false;
        }
        count -= static_cast<std::int64_t>(piece);
    }
    return true;
}

/// Leaves the file at its first pixel.
std::optional<BitmapHeader> readHeader(InputFile& file) {
    constexpr std::uint32_t kSignature = 'B' | 'M' << 8;
    constexpr std::size_t kFileHeaderSize = 14;
    constexpr std::size_t kHeadersSize = 54;
    std::array<Byte, kHeadersSize> bytes;
    if (file.read(bytes.data(), bytes.size()) < bytes.size() || unsigned16(bytes.data()) != kSignature) {
        return {};
    }
    const std::int64_t pixelOffset = fromLittleEndian<std::uint32_t>(bytes.data() + 10);
    if (pixelOffset < std::int64_t{kHeadersSize} || !skipBytes(file, pixelOffset - std::int64_t{kHeadersSize})) {
        return {};
    }
    const Byte* information = bytes.data() + kFileHeaderSize;
    return BitmapHeader{.width = fromLittleEndian<std::int32_t>(information + 4),
                        .height = fromLittleEndian<std::int32_t>(information + 8),
                        .bitsPerPixel = static_cast<std::int32_t>(unsigned16(information + 14)),
                        .imageSize = fromLittleEndian<std::uint32_t>(information + 20)};
}

/// A product of numbers that are not negative; too large a one becomes a size that no file has.
std::int64_t saturatedProduct(std::int64_t a, std::int64_t b) {
    constexpr std::int64_t kLargest = std::numeric_limits<std::int64_t>::max();
    return b != 0 && a > kLargest / b ? kLargest : a * b;
}

/// Nothing when the pixels that the header promises cannot be there.
std::optional<PixelLayout> layoutOf(const BitmapHeader& header) {
    if (header.width < 0 || header.height == std::numeric_limits<std::int32_t>::min()) {
        return {};
    }
    PixelLayout layout = {};
    layout.width = header.width;
    layout.height = header.height < 0 ? -header.height : header.height;
    layout.channels = (header.bitsPerPixel + 7) / 8;
    layout.rowBytes = std::int64_t{layout.channels} * layout.width;
    layout.rowStep = (layout.rowBytes + 3) / 4 * 4;
    const std::int64_t fullSize = saturatedProduct(layout.rowStep, layout.height);
    layout.bytesToRead = header.imageSize != 0 ? header.imageSize : fullSize;
    // The padding of the last row may be missing.
    if (layout.bytesToRead < fullSize - (layout.rowStep - layout.rowBytes)) {
        return {};
    }
    return layout;
}

HeapArray<Byte> tryMakeBytes(std::int64_t count) {
    try {
        return makeArray<Byte>(count);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

/// Null when there are fewer bytes, or no memory for them.
HeapArray<Byte> readBytes(InputFile& file, std::int64_t count) {
    if (file.remaining() >= 0 && file.remaining() < count) {
        return nullptr;
    }
    HeapArray<Byte> bytes = tryMakeBytes(count);
    const auto size = static_cast<std::size_t>(count);
    if (bytes == nullptr || file.read(bytes.get(), size) < size) {
        return nullptr;
    }
    return bytes;
}

MineralMap mapOf(const PixelLayout& layout, const Byte* bytes) {
    MineralMap map = makeImage(layout.width, layout.height, layout.channels);
    if (layout.channels == 1 || layout.channels == 3) {
        float* end = map.data.get() + layout.rowBytes * layout.height;
        // A map without columns may claim any number of rows: there is nothing to go through.
        for (float* to = map.data.get(); to < end; to += layout.rowBytes) {
            std::copy(bytes, bytes + layout.rowBytes, to);
            bytes += layout.rowStep;
        }
    }
    return map;
}

}  // namespace

std::unique_ptr<MineralMap> readMineralMap(const char* fileName) {
    InputFile file(fileName);
    const std::optional<BitmapHeader> header = file.isOpen() ? readHeader(file) : std::nullopt;
    const std::optional<PixelLayout> layout = header ? layoutOf(*header) : std::nullopt;
    if (!layout) {
        return nullptr;
    }
    const HeapArray<Byte> bytes = readBytes(file, layout->bytesToRead);
    return bytes != nullptr ? std::make_unique<MineralMap>(mapOf(*layout, bytes.get())) : nullptr;
}

}  // namespace talvek
