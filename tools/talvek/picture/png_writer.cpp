#include "talvek/picture/png_writer.h"

#include <zlib.h>

#include <algorithm>
#include <cstdlib>
#include <new>
#include <string_view>
#include <vector>

#include "base/output_file.h"
#include "talvek/support/exit_status.h"

namespace talvek::host {

namespace {

constexpr std::size_t kChannels = 3;

void appendBigEndian(std::string& bytes, std::uint32_t value) {
    for (int shift = 24; shift >= 0; shift -= 8) {
        bytes += static_cast<char>(value >> shift & 0xFF);
    }
}

void appendChunk(std::string& bytes, std::string_view type, std::string_view data) {
    appendBigEndian(bytes, static_cast<std::uint32_t>(data.size()));
    const std::string body = std::string(type).append(data);
    bytes += body;
    const uLong sum = crc32(0, reinterpret_cast<const Bytef*>(body.data()), static_cast<uInt>(body.size()));
    appendBigEndian(bytes, static_cast<std::uint32_t>(sum));
}

using Row = std::vector<std::uint8_t>;

/// The nearest of the three neighbours to left + above - before, as the format defines it.
std::uint8_t paeth(int left, int above, int before) {
    const int guess = left + above - before;
    const int toLeft = std::abs(guess - left);
    const int toAbove = std::abs(guess - above);
    const int toBefore = std::abs(guess - before);
    const int nearest = toLeft <= toAbove && toLeft <= toBefore ? left : toAbove <= toBefore ? above : before;
    return static_cast<std::uint8_t>(nearest);
}

enum Filter : std::uint8_t { kSub = 1, kUp = 2, kPaeth = 4 };

/// The filter's number, then each byte's difference to what its neighbours let expect.
Row filtered(Filter filter, const Row& row, const Row& above) {
    Row result = {filter};
    for (std::size_t i = 0; i < row.size(); ++i) {
        const std::uint8_t left = i < kChannels ? std::uint8_t{0} : row[i - kChannels];
        const std::uint8_t before = i < kChannels ? std::uint8_t{0} : above[i - kChannels];
        const std::uint8_t expected = filter == kSub ? left : filter == kUp ? above[i] : paeth(left, above[i], before);
        result.push_back(static_cast<std::uint8_t>(row[i] - expected));
    }
    return result;
}

/// Small differences to either side shrink well.
std::int64_t weightOf(const Row& row) {
    std::int64_t sum = 0;
    for (const std::uint8_t byte : row) {
        sum += std::abs(static_cast<std::int8_t>(byte));
    }
    return sum;
}

Row bytesOfRow(std::span<const Colour> colours) {
    Row row;
    row.reserve(colours.size() * kChannels);
    for (const Colour& colour : colours) {
        const ColourBytes bytes = bytesOf(colour);
        row.insert(row.end(), {bytes.red, bytes.green, bytes.blue});
    }
    return row;
}

std::string filteredRows(const Image& image) {
    Row above(static_cast<std::size_t>(image.width()) * kChannels, 0);
    std::string rows;
    for (int y = 0; y < image.height(); ++y) {
        Row row = bytesOfRow(image.row(y));
        const Row candidates[] = {filtered(kSub, row, above), filtered(kUp, row, above), filtered(kPaeth, row, above)};
        const Row& best = *std::ranges::min_element(candidates, {}, weightOf);
        rows.append(best.begin(), best.end());
        above.swap(row);
    }
    return rows;
}

std::string deflated(const std::string& data) {
    std::string packed(compressBound(static_cast<uLong>(data.size())), '\0');
    auto size = static_cast<uLongf>(packed.size());
    if (compress2(reinterpret_cast<Bytef*>(packed.data()), &size, reinterpret_cast<const Bytef*>(data.data()),
                  static_cast<uLong>(data.size()), Z_BEST_COMPRESSION) != Z_OK) {
        throw std::bad_alloc();
    }
    packed.resize(size);
    return packed;
}

}  // namespace

std::string pngOf(const Image& image) {
    std::string bytes = "\x89PNG\r\n\x1A\n";
    std::string header;
    appendBigEndian(header, static_cast<std::uint32_t>(image.width()));
    appendBigEndian(header, static_cast<std::uint32_t>(image.height()));
    constexpr char kBitDepth = 8;
    constexpr char kTrueColour = 2;
    header += {kBitDepth, kTrueColour, '\0', '\0', '\0'};
    appendChunk(bytes, "IHDR", header);
    constexpr char kPerceptualIntent = 0;
    appendChunk(bytes, "sRGB", std::string(1, kPerceptualIntent));
    appendChunk(bytes, "IDAT", deflated(filteredRows(image)));
    appendChunk(bytes, "IEND", {});
    return bytes;
}

void writePng(const Image& image, const std::string& path) {
    OutputFile file(path.c_str());
    file.write(pngOf(image));
    if (!file.finish()) {
        throw Failure(kExitOutput,
                      path + ": the file cannot be written; look for the folder, its permissions and room");
    }
}

}  // namespace talvek::host
