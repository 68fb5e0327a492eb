// Many numbers at a time become text: the coordinates of eight vertices, the indices of eight faces. First all are
// taken apart, four at once where the processor can (SSE2), then the text of each is copied from tables, and no branch
// depends on a sign or on how many digits there are.
#pragma once

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstring>

#include "base/fast_digits.h"
#include "base/processor.h"

namespace talvek {

/// What a number's text begins with is looked up when it is below this: 64 KiB of texts, of which coordinates up to 100
/// use 1.6, so that they stay in the nearest cache, and indices one line at a time.
inline constexpr std::uint32_t kNumNumberStarts = 4096;
inline constexpr std::size_t kNumberStartSize = 8;

/// The numbers below kNumNumberStarts with a point behind, then the same with a minus sign; the last of the eight
/// characters of each is its length.
inline constexpr auto kNumberStarts = [] {
    std::array<char, std::size_t{2} * kNumNumberStarts * kNumberStartSize> texts{};
    for (std::uint32_t i = 0; i < 2 * kNumNumberStarts; ++i) {
        const std::uint32_t value = i % kNumNumberStarts;
        char* const text = &texts[i * kNumberStartSize];
        std::size_t length = 0;
        if (i >= kNumNumberStarts) {
            text[length++] = '-';
        }
        for (std::uint32_t power = 1000; power > 0; power /= 10) {
            if (value >= power || power == 1) {
                text[length++] = static_cast<char>('0' + value / power % 10);
            }
        }
        text[length++] = '.';
        text[kNumberStartSize - 1] = static_cast<char>(length);
    }
    return texts;
}();

/// The numbers below 1000 with three digits and a blank.
inline constexpr auto kThreeDigits = [] {
    std::array<char, 4000> texts{};
    for (std::uint32_t i = 0; i < 1000; ++i) {
        const char text[] = {static_cast<char>('0' + i / 100), static_cast<char>('0' + i / 10 % 10),
                             static_cast<char>('0' + i % 10), ' '};
        for (std::uint32_t k = 0; k < 4; ++k) {
            texts[4 * i + k] = text[k];
        }
    }
    return texts;
}();

/// Eight characters are written, whatever the length is. Returns what lies behind the point.
inline char* putNumberStart(char* out, std::uint32_t start) {
    const char* text = &kNumberStarts[start * kNumberStartSize];
    std::memcpy(out, text, kNumberStartSize);
    return out + text[kNumberStartSize - 1];
}

/// A blank stands behind what is returned.
inline char* putThreeDigits(char* out, std::uint32_t value) {
    std::memcpy(out, &kThreeDigits[std::size_t{4} * value], 4);
    return out + 3;
}

/// Numbers taken apart: which start each has, and three digits each of what follows.
struct NumberGroup {
    static constexpr std::size_t kSize = 24;
    alignas(16) std::array<std::uint32_t, kSize> start;
    alignas(16) std::array<std::uint32_t, kSize> middle;
    alignas(16) std::array<std::uint32_t, kSize> last;
};

/// Writes a coordinate that takeApart took apart, as formatFixed6 does, and a blank.
inline char* putCoordinate(char* out, const NumberGroup& group, std::size_t i) {
    out = putNumberStart(out, group.start[i]);
    out = putThreeDigits(out, group.middle[i]);
    return putThreeDigits(out, group.last[i]) + 1;
}

/// Writes an index that takeApart took apart, counted from one, and a blank.
inline char* putIndex(char* out, const NumberGroup& group, std::size_t i) {
    out = putNumberStart(out, group.start[i]) - 1;
    return putThreeDigits(out, group.last[i]) + 1;
}

/// A magnitude below kMillionthsLimit times 10^6 as an integer, rounded as printf rounds. A float has 24 significant
/// bits and 10^6 has 14 beside its powers of two, so the product is exact; adding 2^52 rounds it to the nearest
/// integer, ties to even, and leaves it in the lowest bits.
inline constexpr float kMillionthsLimit = 2147483648.0F;
inline constexpr double kRounder = 4503599627370496.0;
inline std::uint64_t millionths(float magnitude) {
    const double rounded = static_cast<double>(magnitude) * 1e6 + kRounder;
    return std::bit_cast<std::uint64_t>(rounded) - std::bit_cast<std::uint64_t>(kRounder);
}

inline bool takeApartPortable(const float* coordinates, NumberGroup& group) {
    for (std::size_t i = 0; i < NumberGroup::kSize; ++i) {
        const float magnitude = std::fabs(coordinates[i]);
        if (!(magnitude < static_cast<float>(kNumNumberStarts))) {
            return false;
        }
        const auto scaled = static_cast<std::uint32_t>(millionths(magnitude));
        group.start[i] = scaled / 1000000 + (std::signbit(coordinates[i]) ? kNumNumberStarts : 0);
        group.middle[i] = scaled / 1000 % 1000;
        group.last[i] = scaled % 1000;
    }
    return true;
}

inline bool takeApartPortable(const std::int32_t* indices, NumberGroup& group) {
    for (std::size_t i = 0; i < NumberGroup::kSize; ++i) {
        const std::uint32_t value = static_cast<std::uint32_t>(indices[i]) + 1;
        if (value < 1000 || value >= 1000 * kNumNumberStarts) {
            return false;
        }
        group.start[i] = value / 1000;
        group.last[i] = value % 1000;
    }
    return true;
}

#ifdef TALVEK_HAS_SSE2

/// Four integers below kNumNumberStarts * 1000 as thousands and what is left. The factor is a little above a
/// thousandth: enough for a multiple of 1000 to give a whole number, but, up to ten million, not enough for the number
/// before it to reach that one too.
inline void splitThousands(__m128i values, std::uint32_t* thousands, std::uint32_t* left) {
    const __m128i quotients = _mm_cvttps_epi32(_mm_mul_ps(_mm_cvtepi32_ps(values), _mm_set1_ps(0.001F)));
    const __m128i rest = _mm_sub_epi32(values, _mm_madd_epi16(quotients, _mm_set1_epi32(1000)));
    _mm_store_si128(reinterpret_cast<__m128i*>(thousands), quotients);
    _mm_store_si128(reinterpret_cast<__m128i*>(left), rest);
}

/// The six decimals of four fractions, in double precision as `millionths`.
inline __m128i decimalsOf(__m128 fractions) {
    const __m128d million = _mm_set1_pd(1e6);
    const __m128d rounder = _mm_set1_pd(kRounder);
    const __m128d low = _mm_add_pd(_mm_mul_pd(_mm_cvtps_pd(fractions), million), rounder);
    const __m128d high = _mm_add_pd(_mm_mul_pd(_mm_cvtps_pd(_mm_movehl_ps(fractions, fractions)), million), rounder);
    constexpr int kLowHalves = _MM_SHUFFLE(2, 0, 2, 0);
    return _mm_castps_si128(_mm_shuffle_ps(_mm_castpd_ps(low), _mm_castpd_ps(high), kLowHalves));
}

inline bool takeApartSse2(const float* coordinates, NumberGroup& group) {
    __m128 refused = _mm_setzero_ps();
    for (std::size_t i = 0; i < NumberGroup::kSize; i += 4) {
        const __m128 values = _mm_loadu_ps(coordinates + i);
        const __m128 magnitudes = _mm_andnot_ps(_mm_set1_ps(-0.0F), values);
        const __m128i whole = _mm_cvttps_epi32(magnitudes);
        const __m128i decimals = decimalsOf(_mm_sub_ps(magnitudes, _mm_cvtepi32_ps(whole)));
        // What is not a number is not below the limit either. A fraction may be rounded up to a whole.
        refused = _mm_or_ps(refused, _mm_cmpnlt_ps(magnitudes, _mm_set1_ps(static_cast<float>(kNumNumberStarts))));
        refused = _mm_or_ps(refused, _mm_castsi128_ps(_mm_cmpgt_epi32(decimals, _mm_set1_epi32(999999))));
        const __m128i signs = _mm_srli_epi32(_mm_castps_si128(values), 31);
        const __m128i starts = _mm_or_si128(whole, _mm_slli_epi32(signs, std::countr_zero(kNumNumberStarts)));
        _mm_store_si128(reinterpret_cast<__m128i*>(&group.start[i]), starts);
        splitThousands(decimals, &group.middle[i], &group.last[i]);
    }
    return _mm_movemask_ps(refused) == 0;
}

inline bool takeApartSse2(const std::int32_t* indices, NumberGroup& group) {
    __m128i refused = _mm_setzero_si128();
    for (std::size_t i = 0; i < NumberGroup::kSize; i += 4) {
        const __m128i fromZero = _mm_loadu_si128(reinterpret_cast<const __m128i*>(indices + i));
        const __m128i values = _mm_add_epi32(fromZero, _mm_set1_epi32(1));
        refused = _mm_or_si128(refused, _mm_cmplt_epi32(values, _mm_set1_epi32(1000)));
        refused = _mm_or_si128(refused, _mm_cmpgt_epi32(values, _mm_set1_epi32(1000 * kNumNumberStarts - 1)));
        splitThousands(values, &group.start[i], &group.last[i]);
    }
    return _mm_movemask_epi8(refused) == 0;
}

#endif

/// Takes NumberGroup::kSize numbers apart: coordinates, all between -kNumNumberStarts and kNumNumberStarts, or indices,
/// which become greater by one, all from 1000 to kNumNumberStarts thousand. False for others, and possibly for
/// coordinates that are rounded up to a whole number.
template <typename Number>
bool takeApart(const Number* numbers, NumberGroup& group) {
#ifdef TALVEK_HAS_SSE2
    return takeApartSse2(numbers, group);
#else
    return takeApartPortable(numbers, group);
#endif
}

}  // namespace talvek
