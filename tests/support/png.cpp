#include "support/png.h"

namespace talvek::test {

namespace {

std::string bigEndian(std::uint32_t value) {
    std::string bytes;
    for (int shift = 24; shift >= 0; shift -= 8) {
        bytes += static_cast<char>(value >> shift & 0xFF);
    }
    return bytes;
}

/// Bit by bit, as the polynomial is divided.
std::uint32_t plainCrc32(std::string_view bytes) {
    std::uint32_t crc = 0xFFFFFFFF;
    for (const char c : bytes) {
        crc ^= static_cast<unsigned char>(c);
        for (int bit = 0; bit < 8; ++bit) {
            crc = (crc & 1) != 0 ? crc >> 1 ^ 0xEDB88320 : crc >> 1;
        }
    }
    return ~crc;
}

std::uint32_t adler32(std::string_view bytes) {
    constexpr std::uint32_t kModulus = 65521;
    std::uint32_t low = 1;
    std::uint32_t high = 0;
    for (const char c : bytes) {
        low = (low + static_cast<unsigned char>(c)) % kModulus;
        high = (high + low) % kModulus;
    }
    return high << 16 | low;
}

/// One stored block, for less than 65,536 bytes.
std::string stored(std::string_view bytes) {
    const auto low = static_cast<char>(bytes.size() & 0xFF);
    const auto high = static_cast<char>(bytes.size() >> 8);
    const std::string head = {'\x78', '\x01', '\x01', low, high, static_cast<char>(~low), static_cast<char>(~high)};
    return head + std::string(bytes) + bigEndian(adler32(bytes));
}

}  // namespace

std::string pngChunk(const std::string& type, const std::string& data) {
    return bigEndian(static_cast<std::uint32_t>(data.size())) + type + data + bigEndian(plainCrc32(type + data));
}

std::string pngBytes(const PngHeader& header, const std::string& palette, const std::string& rows) {
    const std::string rest = {static_cast<char>(header.bitDepth), static_cast<char>(header.colourType), '\0', '\0',
                              '\0'};
    return "\x89PNG\r\n\x1A\n" + pngChunk("IHDR", bigEndian(header.width) + bigEndian(header.height) + rest) +
           (palette.empty() ? "" : pngChunk("PLTE", palette)) + pngChunk("IDAT", stored(rows)) + pngChunk("IEND", "");
}

}  // namespace talvek::test
