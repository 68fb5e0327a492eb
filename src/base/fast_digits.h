// Decimal digits, many at a time: where a run of digits ends comes from one comparison of 16 characters (SSE2) or of 8
// in a word, and what 8 digits amount to comes from three multiplications, each of which joins neighbours: digits to
// pairs, pairs to fours, fours to eights.
#pragma once

#include <bit>
#include <cstdint>
#include <cstring>

#include "base/processor.h"

namespace talvek {

/// Eight characters, the first one in the lowest byte.
inline std::uint64_t loadCharacters(const char* text) {
    std::uint64_t word = 0;
    if constexpr (std::endian::native == std::endian::little) {
        std::memcpy(&word, text, sizeof word);
    } else {
        for (int i = 7; i >= 0; --i) {
            word = word << 8 | static_cast<unsigned char>(text[i]);
        }
    }
    return word;
}

/// For each of 8 characters whether it is no decimal digit, the first one in bit 0.
inline std::uint32_t nonDigitsOf8(const char* text) {
    constexpr std::uint64_t kEach = 0x0101010101010101;
    constexpr std::uint64_t kLowBits = 0x7F * kEach;
    // Digits become 0 to 9. The sum then reaches the top bit exactly from 10 on, or from a top bit set before.
    const std::uint64_t value = loadCharacters(text) ^ ('0' * kEach);
    const std::uint64_t marks = (((value & kLowBits) + (0x80 - 10) * kEach) | value) & ~kLowBits;
    // The product gathers the eight top bits, one place apart, in the highest byte.
    return static_cast<std::uint32_t>((marks >> 7) * 0x0102040810204080 >> 56);
}

/// The same for 32 characters.
inline std::uint32_t nonDigitsOf32Portable(const char* text) {
    return nonDigitsOf8(text) | nonDigitsOf8(text + 8) << 8 | nonDigitsOf8(text + 16) << 16 |
           nonDigitsOf8(text + 24) << 24;
}

#ifdef TALVEK_HAS_SSE2
/// All bits set in each of 16 characters that is no decimal digit.
inline __m128i marksNonDigits(__m128i characters) {
    // Shifted so that the digits are the ten smallest values of a signed byte.
    const __m128i shifted = _mm_add_epi8(characters, _mm_set1_epi8(static_cast<char>(128 - '0')));
    return _mm_cmpgt_epi8(shifted, _mm_set1_epi8(-128 + 9));
}

inline std::uint32_t nonDigitsOf16Sse2(const char* text) {
    const __m128i characters = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text));
    return static_cast<std::uint32_t>(_mm_movemask_epi8(marksNonDigits(characters)));
}

inline std::uint32_t nonDigitsOf32(const char* text) {
    return nonDigitsOf16Sse2(text) | nonDigitsOf16Sse2(text + 16) << 16;
}
#else
inline std::uint32_t nonDigitsOf32(const char* text) {
    return nonDigitsOf32Portable(text);
}
#endif

inline std::uint64_t nonDigitsOf64(const char* text) {
    return nonDigitsOf32(text) | static_cast<std::uint64_t>(nonDigitsOf32(text + 32)) << 32;
}

/// The value of 1 to 8 decimal digits. Eight characters are read, whatever `count` is.
inline std::uint32_t valueOfDigits(const char* text, unsigned count) {
    // The characters behind the digits go out at the top, zeros that lead come in below.
    std::uint64_t value = (loadCharacters(text) ^ 0x3030303030303030) << (64 - 8 * count);
    value = value * 10 + (value >> 8);
    constexpr std::uint64_t kPairs = 0x000000FF000000FF;
    const std::uint64_t upper = (value & kPairs) * (100 + (std::uint64_t{1000000} << 32));
    const std::uint64_t lower = (value >> 16 & kPairs) * (1 + (std::uint64_t{10000} << 32));
    return static_cast<std::uint32_t>((upper + lower) >> 32);
}

/// The value of 1 to 16 decimal digits. Sixteen characters are read, whatever `count` is.
inline std::uint64_t valueOfManyDigits(const char* text, unsigned count) {
    if (count <= 8) {
        return valueOfDigits(text, count);
    }
    constexpr std::uint64_t kPowersOfTen[] = {1, 10, 100, 1000, 10000, 100000, 1000000, 10000000, 100000000};
    return valueOfDigits(text, 8) * kPowersOfTen[count - 8] + valueOfDigits(text + 8, count - 8);
}

}  // namespace talvek
