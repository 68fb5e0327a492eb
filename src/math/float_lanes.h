// Four floats that are calculated with at once where the processor can (SSE2); every operation gives for each of the
// four what it gives for a float alone.
#pragma once

#include <array>
#include <cmath>
#include <cstdint>

#include "base/processor.h"

namespace talvek {

#ifdef TALVEK_HAS_SSE2

struct FloatLanes {
    __m128 all;

    FloatLanes(__m128 lanes) : all(lanes) {}
    FloatLanes(float value) : all(_mm_set1_ps(value)) {}
    FloatLanes(float a, float b, float c, float d) : all(_mm_setr_ps(a, b, c, d)) {}
};

inline FloatLanes operator-(FloatLanes a, FloatLanes b) {
    return _mm_sub_ps(a.all, b.all);
}
inline FloatLanes operator+(FloatLanes a, FloatLanes b) {
    return _mm_add_ps(a.all, b.all);
}
inline FloatLanes operator*(FloatLanes a, FloatLanes b) {
    return _mm_mul_ps(a.all, b.all);
}
inline FloatLanes operator/(FloatLanes a, FloatLanes b) {
    return _mm_div_ps(a.all, b.all);
}
inline FloatLanes squareRoot(FloatLanes a) {
    return _mm_sqrt_ps(a.all);
}
inline FloatLanes absolute(FloatLanes a) {
    return _mm_andnot_ps(_mm_set1_ps(-0.0F), a.all);
}
/// The second lane in place of the first, the third, the first, and the last as it was.
inline FloatLanes rotateThree(FloatLanes a) {
    return _mm_shuffle_ps(a.all, a.all, _MM_SHUFFLE(3, 0, 2, 1));
}
/// `high < low ? low : high < value ? high : value` for values that are numbers.
inline FloatLanes clamp(FloatLanes value, float low, float high) {
    return _mm_max_ps(_mm_min_ps(value.all, _mm_set1_ps(high)), _mm_set1_ps(low));
}
/// Bit i stands for lane i.
inline int whereAtLeast(FloatLanes a, FloatLanes b) {
    return _mm_movemask_ps(_mm_cmpge_ps(a.all, b.all));
}
inline int whereAbove(FloatLanes a, FloatLanes b) {
    return _mm_movemask_ps(_mm_cmpgt_ps(a.all, b.all));
}
inline std::array<float, 4> toArray(FloatLanes a) {
    std::array<float, 4> values;
    _mm_storeu_ps(values.data(), a.all);
    return values;
}
/// Cut off towards zero.
inline std::array<std::int32_t, 4> toIntegers(FloatLanes a) {
    alignas(16) std::array<std::int32_t, 4> values;
    _mm_store_si128(reinterpret_cast<__m128i*>(values.data()), _mm_cvttps_epi32(a.all));
    return values;
}

#else

struct FloatLanes {
    std::array<float, 4> all;

    FloatLanes(float value) : all{value, value, value, value} {}
    FloatLanes(float a, float b, float c, float d) : all{a, b, c, d} {}
};

template <typename Operation>
FloatLanes forEachLane(FloatLanes a, FloatLanes b, Operation operation) {
    return {operation(a.all[0], b.all[0]), operation(a.all[1], b.all[1]), operation(a.all[2], b.all[2]),
            operation(a.all[3], b.all[3])};
}
template <typename Condition>
int whereLanes(FloatLanes a, FloatLanes b, Condition condition) {
    int lanes = 0;
    for (unsigned i = 0; i < 4; ++i) {
        lanes |= condition(a.all[i], b.all[i]) ? 1 << i : 0;
    }
    return lanes;
}

inline FloatLanes operator-(FloatLanes a, FloatLanes b) {
    return forEachLane(a, b, [](float p, float q) { return p - q; });
}
inline FloatLanes operator+(FloatLanes a, FloatLanes b) {
    return forEachLane(a, b, [](float p, float q) { return p + q; });
}
inline FloatLanes operator*(FloatLanes a, FloatLanes b) {
    return forEachLane(a, b, [](float p, float q) { return p * q; });
}
inline FloatLanes operator/(FloatLanes a, FloatLanes b) {
    return forEachLane(a, b, [](float p, float q) { return p / q; });
}
inline FloatLanes squareRoot(FloatLanes a) {
    return forEachLane(a, a, [](float p, float) { return std::sqrt(p); });
}
inline FloatLanes absolute(FloatLanes a) {
    return forEachLane(a, a, [](float p, float) { return std::fabs(p); });
}
inline FloatLanes rotateThree(FloatLanes a) {
    return {a.all[1], a.all[2], a.all[0], a.all[3]};
}
inline FloatLanes clamp(FloatLanes value, float low, float high) {
    return forEachLane(value, value, [low, high](float p, float) { return std::fmax(std::fmin(p, high), low); });
}
inline int whereAtLeast(FloatLanes a, FloatLanes b) {
    return whereLanes(a, b, [](float p, float q) { return p >= q; });
}
inline int whereAbove(FloatLanes a, FloatLanes b) {
    return whereLanes(a, b, [](float p, float q) { return p > q; });
}
inline std::array<float, 4> toArray(FloatLanes a) {
    return a.all;
}
inline std::array<std::int32_t, 4> toIntegers(FloatLanes a) {
    return {static_cast<std::int32_t>(a.all[0]), static_cast<std::int32_t>(a.all[1]),
            static_cast<std::int32_t>(a.all[2]), static_cast<std::int32_t>(a.all[3])};
}

#endif

}  // namespace talvek
