// Single-precision numbers as integers in the same order, so that neighbouring numbers are neighbouring integers and a
// difference of two is small where the numbers are near each other. Every bit pattern has an integer of its own.
#pragma once

#include <bit>
#include <cstdint>

namespace talvek::host {

constexpr std::uint32_t orderedOf(float value) {
    const auto bits = std::bit_cast<std::uint32_t>(value);
    return (bits >> 31) != 0 ? ~bits : bits | 0x80000000U;
}

constexpr float floatOf(std::uint32_t ordered) {
    return std::bit_cast<float>((ordered >> 31) != 0 ? ordered & 0x7FFFFFFFU : ~ordered);
}

/// A difference modulo 2^32 with its sign in the lowest bit: small ones of either sign become small numbers.
constexpr std::uint32_t zigzag(std::uint32_t difference) {
    return difference << 1 ^ (0U - (difference >> 31));
}

}  // namespace talvek::host
