// Normals of four faces, and of four vertices, at a time, for processors with SSE2: every lane does what the plain code
// does, in the same order, so that the results are the same to the last bit.
#pragma once

#include "base/processor.h"

#ifdef TALVEK_HAS_SSE2

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>

#include "math/not_a_number.h"

namespace talvek::sse2 {

/// Component by component of four vectors.
struct FourVectors {
    __m128 x, y, z;
};

inline FourVectors operator-(const FourVectors& a, const FourVectors& b) {
    return {_mm_sub_ps(a.x, b.x), _mm_sub_ps(a.y, b.y), _mm_sub_ps(a.z, b.z)};
}

inline FourVectors operator/(const FourVectors& a, __m128 divisors) {
    return {_mm_div_ps(a.x, divisors), _mm_div_ps(a.y, divisors), _mm_div_ps(a.z, divisors)};
}

inline __m128 differenceOfProducts(__m128 a, __m128 b, __m128 c, __m128 d) {
    return _mm_sub_ps(_mm_mul_ps(a, b), _mm_mul_ps(c, d));
}

inline FourVectors cross(const FourVectors& a, const FourVectors& b) {
    return {differenceOfProducts(a.y, b.z, a.z, b.y), differenceOfProducts(a.z, b.x, a.x, b.z),
            differenceOfProducts(a.x, b.y, a.y, b.x)};
}

inline __m128 lengths(const FourVectors& v) {
    const __m128 xy = _mm_add_ps(_mm_mul_ps(v.x, v.x), _mm_mul_ps(v.y, v.y));
    return _mm_sqrt_ps(_mm_add_ps(xy, _mm_mul_ps(v.z, v.z)));
}

/// `chosen` where the mask is set, `other` elsewhere.
inline __m128 select(__m128 mask, __m128 chosen, __m128 other) {
    return _mm_or_ps(_mm_and_ps(mask, chosen), _mm_andnot_ps(mask, other));
}

/// Three floats and a 0, without a look at what follows them.
inline __m128 loadTriple(const float* triple) {
    double firstTwo = 0;
    std::memcpy(&firstTwo, triple, sizeof firstTwo);
    return _mm_movelh_ps(_mm_castpd_ps(_mm_set_sd(firstTwo)), _mm_load_ss(triple + 2));
}

inline void storeTriple(float* triple, __m128 values) {
    const __m128d firstTwo = _mm_castps_pd(values);
    std::memcpy(triple, &firstTwo, sizeof(double));
    _mm_store_ss(triple + 2, _mm_movehl_ps(values, values));
}

/// The positions of one corner of four faces.
inline FourVectors cornersOfFour(const float* vertices, const std::int32_t* corner) {
    const __m128 a = loadTriple(vertices + 3 * std::int64_t{corner[0]});
    const __m128 b = loadTriple(vertices + 3 * std::int64_t{corner[3]});
    const __m128 c = loadTriple(vertices + 3 * std::int64_t{corner[6]});
    const __m128 d = loadTriple(vertices + 3 * std::int64_t{corner[9]});
    const __m128 firstXy = _mm_unpacklo_ps(a, b);
    const __m128 lastXy = _mm_unpacklo_ps(c, d);
    return {_mm_movelh_ps(firstXy, lastXy), _mm_movehl_ps(lastXy, firstXy),
            _mm_movelh_ps(_mm_unpackhi_ps(a, b), _mm_unpackhi_ps(c, d))};
}

/// Four vectors one after the other, each with `fourth` behind it.
struct FourRows {
    __m128 rows[4];
    FourRows(const FourVectors& v, __m128 fourth) : rows{v.x, v.y, v.z, fourth} {
        _MM_TRANSPOSE4_PS(rows[0], rows[1], rows[2], rows[3]);
    }
};

/// The unit normals of four faces, each followed by a 1. `out` is aligned to 16 bytes.
inline void unitNormalsOfFour(const float* vertices, const std::int32_t* corners, float shortest, float* out) {
    const FourVectors a = cornersOfFour(vertices, corners);
    const FourVectors b = cornersOfFour(vertices, corners + 1);
    const FourVectors c = cornersOfFour(vertices, corners + 2);
    const FourVectors n = cross(a - b, b - c);
    const __m128 size = lengths(n);
    const __m128 one = _mm_set1_ps(1.0F);
    const FourRows result(n / select(_mm_cmple_ps(size, _mm_set1_ps(shortest)), one, size), one);
    for (std::size_t i = 0; i < 4; ++i) {
        _mm_store_ps(out + 4 * i, result.rows[i]);
    }
}

inline __m128 withOneNan(__m128 values) {
    const __m128 isNan = _mm_cmpunord_ps(values, values);
    return select(isNan, _mm_set1_ps(talvek::withOneNan(std::numeric_limits<float>::quiet_NaN())), values);
}

/// The normals of four vertices from the sums of their faces' normals, each followed by the number of faces. `out` may
/// be where the sums are, or in front of it.
inline void vertexNormalsOfFour(const float* sums, float* out) {
    FourVectors sum = {_mm_loadu_ps(sums), _mm_loadu_ps(sums + 4), _mm_loadu_ps(sums + 8)};
    __m128 count = _mm_loadu_ps(sums + 12);
    _MM_TRANSPOSE4_PS(sum.x, sum.y, sum.z, count);
    const FourVectors mean = sum / count;
    const __m128 size = lengths(mean);
    const FourVectors unit = mean / size;
    const __m128 zero = _mm_setzero_ps();
    const __m128 hasNone = _mm_or_ps(_mm_cmpeq_ps(count, zero), _mm_cmpeq_ps(size, zero));
    const FourRows result({withOneNan(_mm_andnot_ps(hasNone, unit.x)), withOneNan(_mm_andnot_ps(hasNone, unit.y)),
                           withOneNan(_mm_andnot_ps(hasNone, unit.z))},
                          zero);
    for (std::size_t i = 0; i < 4; ++i) {
        storeTriple(out + 3 * i, result.rows[i]);
    }
}

/// Adds four floats to four others.
inline void addFour(float* to, const float* values) {
    _mm_storeu_ps(to, _mm_add_ps(_mm_loadu_ps(to), _mm_load_ps(values)));
}

}  // namespace talvek::sse2

#endif
