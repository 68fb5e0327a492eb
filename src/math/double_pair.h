// Two doubles that are calculated with at once where the processor can (SSE2); every operation gives for each of the
// two what it gives for a double alone.
#pragma once

#include <cmath>
#include <cstddef>

#include "base/processor.h"

namespace talvek {

#ifdef TALVEK_HAS_SSE2

struct DoublePair {
    __m128d both;

    DoublePair() = default;
    DoublePair(__m128d pair) : both(pair) {}
    DoublePair(double value) : both(_mm_set1_pd(value)) {}
};

inline DoublePair operator+(DoublePair a, DoublePair b) {
    return _mm_add_pd(a.both, b.both);
}
inline DoublePair operator-(DoublePair a, DoublePair b) {
    return _mm_sub_pd(a.both, b.both);
}
inline DoublePair operator*(DoublePair a, DoublePair b) {
    return _mm_mul_pd(a.both, b.both);
}
inline DoublePair operator/(DoublePair a, DoublePair b) {
    return _mm_div_pd(a.both, b.both);
}
inline DoublePair squareRoot(DoublePair a) {
    return _mm_sqrt_pd(a.both);
}
/// `value < limit ? limit : value`
inline DoublePair atLeast(DoublePair value, double limit) {
    return _mm_max_pd(_mm_set1_pd(limit), value.both);
}
/// Of two numbers.
inline DoublePair larger(DoublePair a, DoublePair b) {
    return _mm_max_pd(a.both, b.both);
}
inline bool areEqual(DoublePair a, DoublePair b) {
    return _mm_movemask_pd(_mm_cmpeq_pd(a.both, b.both)) == 3;
}
inline void load(const double* from, DoublePair& to) {
    to.both = _mm_loadu_pd(from);
}
inline void store(double* to, DoublePair from) {
    _mm_storeu_pd(to, from.both);
}

using DoubleLanes = DoublePair;

#else

using DoubleLanes = double;

#endif

/// The same for one double, for code that is written for both.
inline double squareRoot(double a) {
    return std::sqrt(a);
}
inline double atLeast(double value, double limit) {
    return value < limit ? limit : value;
}
inline double larger(double a, double b) {
    return a > b ? a : b;
}
inline bool areEqual(double a, double b) {
    return a == b;
}
inline void load(const double* from, double& to) {
    to = *from;
}
inline void store(double* to, double from) {
    *to = from;
}

/// How many doubles are calculated with at once.
inline constexpr std::size_t kDoubleLanes = sizeof(DoubleLanes) / sizeof(double);

}  // namespace talvek
