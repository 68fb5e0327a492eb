// The numbers of a line all at once, for processors with SSE2. The characters that end numbers are found by comparing
// 16 at a time, and their places are taken from one mask, so that no number has to be finished before the next one is
// found. The digits in front of each end, up to 8, are masked out and joined side by side: digits to pairs, pairs to
// fours, fours to eights.
//
// All functions read up to 8 characters in front of `text`.
#pragma once

#include "base/processor.h"

#ifdef TALVEK_HAS_SSE2

namespace talvek::sse2 {

/// Bit masks of 16 characters each: what ends a number, and line ends.
inline std::uint64_t maskOf(__m128i marks) {
    return static_cast<std::uint64_t>(_mm_movemask_epi8(marks));
}
inline __m128i load16(const char* text) {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(text));
}
inline __m128i marksBlanks(__m128i characters) {
    return _mm_cmpgt_epi8(_mm_set1_epi8(' ' + 1), characters);
}
inline __m128i marks(__m128i characters, char wanted) {
    return _mm_cmpeq_epi8(characters, _mm_set1_epi8(wanted));
}

/// The places of what ends a number, taken from the front. A mask of up to 48 characters; after the last one come
/// places beyond them.
class Ends {
  public:
    explicit Ends(std::uint64_t mask) : mask_(mask | std::uint64_t{0xFFFF} << 48) {}
    unsigned next() {
        const auto place = static_cast<unsigned>(std::countr_zero(mask_));
        mask_ &= mask_ - 1;
        return place;
    }

  private:
    std::uint64_t mask_;
};

// Keeps the last n of eight characters.
inline constexpr std::uint64_t kLastOfEight[] = {0,
                                                 0xFF00000000000000,
                                                 0xFFFF000000000000,
                                                 0xFFFFFF0000000000,
                                                 0xFFFFFFFF00000000,
                                                 0xFFFFFFFFFF000000,
                                                 0xFFFFFFFFFFFF0000,
                                                 0xFFFFFFFFFFFFFF00,
                                                 0xFFFFFFFFFFFFFFFF};

/// Two eights of bytes side by side.
inline __m128i sideBySide(const void* first, const void* second) {
    std::int64_t low = 0;
    std::int64_t high = 0;
    std::memcpy(&low, first, sizeof low);
    std::memcpy(&high, second, sizeof high);
    return _mm_set_epi64x(high, low);
}

/// The digits of two numbers, which end before `firstEnd` and `secondEnd`, each at the end of eight bytes. Bytes above
/// 9 come from characters that are no digits.
inline __m128i digitsOfTwo(const char* firstEnd, unsigned firstCount, const char* secondEnd, unsigned secondCount) {
    const __m128i characters = sideBySide(firstEnd - 8, secondEnd - 8);
    const __m128i kept = sideBySide(&kLastOfEight[firstCount], &kLastOfEight[secondCount]);
    return _mm_and_si128(_mm_sub_epi8(characters, _mm_set1_epi8('0')), kept);
}

/// Not 0 in every byte that is no digit.
inline __m128i excess(__m128i digits) {
    return _mm_subs_epu8(digits, _mm_set1_epi8(9));
}

inline bool isZero(__m128i bytes) {
    return _mm_movemask_epi8(_mm_cmpeq_epi8(bytes, _mm_setzero_si128())) == 0xFFFF;
}

/// Joins two times 8 digits to four numbers of 4 digits.
inline __m128i joinToFours(__m128i digits) {
    // In each pair the product is 10 * tens + ones in its upper byte: 2561 is 10 * 256 + 1.
    const __m128i pairs = _mm_srli_epi16(_mm_mullo_epi16(digits, _mm_set1_epi16(2561)), 8);
    return _mm_madd_epi16(pairs, _mm_set1_epi32(100 | 1 << 16));
}

/// The values of four times 8 digits.
inline __m128i joinToEights(__m128i firstTwo, __m128i lastTwo) {
    const __m128i fours = _mm_packs_epi32(joinToFours(firstTwo), joinToFours(lastTwo));
    return _mm_madd_epi16(fours, _mm_set1_epi32(10000 | 1 << 16));
}

/// Reads three whole numbers of up to 8 digits, one blank between them and white space behind, in 32 characters, and
/// lessens each by one. `out` has room for four. Returns the place of the white space, 0 when the text has another
/// form.
inline unsigned readVertexNumbers(const char* text, std::int32_t* out) {
    Ends ends(maskOf(marksBlanks(load16(text))) | maskOf(marksBlanks(load16(text + 16))) << 16);
    const unsigned a = ends.next();
    const unsigned b = ends.next();
    const unsigned c = ends.next();
    const unsigned countOfB = b - a - 1;
    const unsigned countOfC = c - b - 1;
    if (((a - 1) | (countOfB - 1) | (countOfC - 1)) >= 8 || text[a] != ' ' || text[b] != ' ' || c >= 32) {
        return 0;
    }
    const __m128i firstTwo = digitsOfTwo(text + a, a, text + b, countOfB);
    const __m128i last = digitsOfTwo(text + c, countOfC, text + c, 0);
    if (!isZero(_mm_or_si128(excess(firstTwo), excess(last)))) {
        return 0;
    }
    const __m128i lessened = _mm_add_epi32(joinToEights(firstTwo, last), _mm_set1_epi32(-1));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out), lessened);
    return c;
}

/// Where a number with decimals stands in a line, "-12.34".
struct DecimalPlace {
    unsigned wholeDigits;
    unsigned point;
    unsigned decimals;
    unsigned end;
    unsigned isNegative;
};

inline DecimalPlace nextDecimal(const char* text, Ends& ends, unsigned start) {
    const unsigned point = ends.next();
    const unsigned end = ends.next();
    const unsigned isNegative = text[start] == '-' ? 1 : 0;
    return {.wholeDigits = point - start - isNegative,
            .point = point,
            .decimals = end - point - 1,
            .end = end,
            .isNegative = isNegative};
}

/// 10^k and, from kNegative on, -10^k.
inline constexpr double kPowersOfTen[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,
                                          -1e0, -1e1, -1e2, -1e3, -1e4, -1e5, -1e6, -1e7, -1e8};
inline constexpr unsigned kNegative = 9;

inline const double* divisorOf(const DecimalPlace& place) {
    return &kPowersOfTen[place.decimals + kNegative * place.isNegative];
}

/// (whole * 10^k + decimals) / 10^k, with the sign of the divisor. At most 15 digits: all but the division is exact.
inline __m128d quotients(__m128i twoWhole, __m128i twoDecimals, __m128d divisors) {
    const __m128d powers = _mm_andnot_pd(_mm_set1_pd(-0.0), divisors);
    const __m128d digits = _mm_add_pd(_mm_mul_pd(_mm_cvtepi32_pd(twoWhole), powers), _mm_cvtepi32_pd(twoDecimals));
    return _mm_div_pd(digits, divisors);
}

/// Reads three numbers with decimals, "-1.25 0.5 12.000001": 1 to 8 digits before and behind each point, together at
/// most 15, one blank between the numbers and white space behind, in 48 characters. `out` has room for four. Returns
/// the place of the white space, 0 when the text has another form or rounding is not safe.
inline unsigned readPosition(const char* text, float* out) {
    const auto endsIn = [](__m128i characters) {
        return maskOf(_mm_or_si128(marksBlanks(characters), marks(characters, '.')));
    };
    Ends ends(endsIn(load16(text)) | endsIn(load16(text + 16)) << 16 | endsIn(load16(text + 32)) << 32);
    const DecimalPlace a = nextDecimal(text, ends, 0);
    const DecimalPlace b = nextDecimal(text, ends, a.end + 1);
    const DecimalPlace c = nextDecimal(text, ends, b.end + 1);
    const unsigned countsLessOne = (a.wholeDigits - 1) | (a.decimals - 1) | (b.wholeDigits - 1) | (b.decimals - 1) |
                                   (c.wholeDigits - 1) | (c.decimals - 1);
    const unsigned sums = (a.wholeDigits + a.decimals) | (b.wholeDigits + b.decimals) | (c.wholeDigits + c.decimals);
    if (countsLessOne >= 8 || sums >= 16 || c.end >= 48) {
        return 0;
    }
    if (text[a.point] != '.' || text[b.point] != '.' || text[c.point] != '.' || text[a.end] != ' ' ||
        text[b.end] != ' ' || text[c.end] == '.') {
        return 0;
    }
    const __m128i wholeAB = digitsOfTwo(text + a.point, a.wholeDigits, text + b.point, b.wholeDigits);
    const __m128i bothC = digitsOfTwo(text + c.point, c.wholeDigits, text + c.end, c.decimals);
    const __m128i decimalsAB = digitsOfTwo(text + a.end, a.decimals, text + b.end, b.decimals);
    if (!isZero(_mm_or_si128(excess(wholeAB), _mm_or_si128(excess(bothC), excess(decimalsAB))))) {
        return 0;
    }
    const __m128i values = joinToEights(wholeAB, bothC);
    const __m128i decimals = joinToEights(decimalsAB, decimalsAB);
    const __m128d divisorsAB = _mm_loadh_pd(_mm_load_sd(divisorOf(a)), divisorOf(b));
    const __m128d lower = quotients(values, decimals, divisorsAB);
    const __m128d upper = quotients(_mm_unpackhi_epi64(values, values),
                                    _mm_srli_epi64(_mm_unpackhi_epi64(values, values), 32), _mm_load1_pd(divisorOf(c)));
    _mm_storeu_ps(out, _mm_movelh_ps(_mm_cvtpd_ps(lower), _mm_cvtpd_ps(upper)));
    return c.end;
}

/// The place behind the first line end among 48 characters, 0 when there is none or a record could start before it.
inline unsigned passOverLine(const char* text) {
    const __m128i parts[] = {load16(text), load16(text + 16), load16(text + 32)};
    const auto placesOf = [&](auto mark) {
        return maskOf(mark(parts[0])) | maskOf(mark(parts[1])) << 16 | maskOf(mark(parts[2])) << 32;
    };
    const std::uint64_t ends = placesOf([](__m128i part) { return marks(part, '\n'); });
    const std::uint64_t records =
        placesOf([](__m128i part) { return _mm_or_si128(marks(part, 'v'), marks(part, 'f')); });
    const std::uint64_t upToEnd = ends ^ (ends - 1);
    return ends != 0 && (records & upToEnd) == 0 ? static_cast<unsigned>(std::countr_zero(ends)) + 1 : 0;
}

}  // namespace talvek::sse2

#endif
