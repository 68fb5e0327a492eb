// The chunks and their checksum are those of the PNG specification, second edition (ISO/IEC 15948:2003), section 5 and
// annex D.
#include "talvek/mineral_map/png_check.h"

#include <array>
#include <cstdint>

namespace talvek::host {

namespace {

using namespace std::string_view_literals;

constexpr std::string_view kSignature = "\x89PNG\r\n\x1A\n"sv;
/// What a chunk has besides its data: length, type, checksum.
constexpr std::size_t kFrameSize = 12;

constexpr std::array<std::uint32_t, 256> kRemainders = [] {
    std::array<std::uint32_t, 256> remainders{};
    for (std::uint32_t n = 0; n < remainders.size(); ++n) {
        remainders[n] = n;
        for (int bit = 0; bit < 8; ++bit) {
            remainders[n] = (remainders[n] & 1) != 0 ? 0xEDB88320 ^ remainders[n] >> 1 : remainders[n] >> 1;
        }
    }
    return remainders;
}();

std::uint32_t crc32(std::string_view bytes) {
    std::uint32_t crc = 0xFFFFFFFF;
    for (const char c : bytes) {
        crc = kRemainders[(crc ^ static_cast<unsigned char>(c)) & 0xFF] ^ crc >> 8;
    }
    return ~crc;
}

std::uint32_t bigEndian(std::string_view bytes) {
    std::uint32_t value = 0;
    for (const char c : bytes.substr(0, 4)) {
        value = value << 8 | static_cast<unsigned char>(c);
    }
    return value;
}

}  // namespace

bool isPng(std::string_view bytes) {
    return bytes.starts_with(kSignature);
}

bool isIntactPng(std::string_view bytes) {
    bytes.remove_prefix(kSignature.size());
    while (bytes.size() >= kFrameSize) {
        const std::size_t length = bigEndian(bytes);
        if (length > bytes.size() - kFrameSize) {
            return false;
        }
        const std::string_view typeAndData = bytes.substr(4, 4 + length);
        if (crc32(typeAndData) != bigEndian(bytes.substr(8 + length))) {
            return false;
        }
        if (typeAndData.starts_with("IEND")) {
            return true;
        }
        bytes.remove_prefix(kFrameSize + length);
    }
    return false;
}

}  // namespace talvek::host
