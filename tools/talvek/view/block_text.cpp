#include "talvek/view/block_text.h"

#include <zlib.h>

#include <algorithm>
#include <new>

namespace talvek::host {

namespace {

constexpr int kRawWindow = -15;
constexpr int kMemoryLevel = 9;
/// zlib counts in unsigned int, which holds less than a large block.
constexpr std::size_t kPiece = std::size_t{1} << 28;

/// Ends the stream however the function is left.
struct DeflateStream {
    DeflateStream(int level, int strategy) {
        if (deflateInit2(&state, level, Z_DEFLATED, kRawWindow, kMemoryLevel, strategy) != Z_OK) {
            throw std::bad_alloc();
        }
    }
    DeflateStream(const DeflateStream&) = delete;
    DeflateStream& operator=(const DeflateStream&) = delete;
    ~DeflateStream() { deflateEnd(&state); }

    z_stream state{};
};

/// Appends what comes out until the stream wants more input, or ends.
void drain(z_stream& state, int flush, Bytes& out) {
    std::uint8_t piece[65536];
    do {
        state.next_out = piece;
        state.avail_out = sizeof piece;
        deflate(&state, flush);
        out.insert(out.end(), piece, piece + (sizeof piece - state.avail_out));
    } while (state.avail_out == 0);
}

}  // namespace

Bytes compress(std::span<const std::uint8_t> bytes, Redundancy redundancy) {
    const bool isRuns = redundancy == Redundancy::kRuns;
    DeflateStream stream(isRuns ? 1 : 6, isRuns ? Z_RLE : Z_DEFAULT_STRATEGY);
    Bytes out;
    do {
        const std::size_t size = std::min(bytes.size(), kPiece);
        // The interface predates const.
        stream.state.next_in = const_cast<std::uint8_t*>(bytes.data());
        stream.state.avail_in = static_cast<unsigned>(size);
        bytes = bytes.subspan(size);
        drain(stream.state, bytes.empty() ? Z_FINISH : Z_NO_FLUSH, out);
    } while (!bytes.empty());
    return out;
}

std::string base64Of(std::span<const std::uint8_t> bytes) {
    static constexpr char kDigits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text((bytes.size() + 2) / 3 * 4, '=');
    char* out = text.data();
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
        const std::size_t count = std::min<std::size_t>(3, bytes.size() - i);
        std::uint32_t bits = std::uint32_t{bytes[i]} << 16;
        bits |= count > 1 ? std::uint32_t{bytes[i + 1]} << 8 : 0;
        bits |= count > 2 ? std::uint32_t{bytes[i + 2]} : 0;
        for (std::size_t k = 0; k <= count; ++k) {
            out[k] = kDigits[bits >> (18 - 6 * k) & 63];
        }
        out += 4;
    }
    return text;
}

std::uint32_t checksumOf(std::span<const std::uint8_t> bytes) {
    return static_cast<std::uint32_t>(crc32_z(crc32_z(0, nullptr, 0), bytes.data(), bytes.size()));
}

}  // namespace talvek::host
