// Numbers of 32 bits as binary files hold them, the lowest byte first, on a machine of any byte order.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

namespace talvek {

/// The number that four bytes of a file stand for.
template <typename T>
T fromLittleEndian(const void* bytes) {
    static_assert(sizeof(T) == 4 && std::is_trivially_copyable_v<T>);
    unsigned char byte[4];
    std::memcpy(byte, bytes, sizeof byte);
    const std::uint32_t bits =
        byte[0] | std::uint32_t{byte[1]} << 8 | std::uint32_t{byte[2]} << 16 | std::uint32_t{byte[3]} << 24;
    T value;
    std::memcpy(&value, &bits, sizeof value);
    return value;
}

/// Writes the four bytes of a number; returns where the next one goes.
template <typename T>
char* toLittleEndian(char* out, T value) {
    static_assert(sizeof(T) == 4 && std::is_trivially_copyable_v<T>);
    std::uint32_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    for (int shift = 0; shift < 32; shift += 8) {
        *out++ = static_cast<char>(bits >> shift & 0xFF);
    }
    return out;
}

/// Turns numbers that lie in memory as the file holds them into the machine's own. Costs nothing where they are that
/// already, as the compiler then sees.
template <typename T>
void fromLittleEndianInPlace(T* values, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        values[i] = fromLittleEndian<T>(&values[i]);
    }
}

}  // namespace talvek
