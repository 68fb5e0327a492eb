// Arc cosine and arc tangent. A quick evaluation gives the result to about 64 bits. If those leave open which double is
// next to the exact value, which happens about once in a thousand calls, a slow one of about 100 bits decides.
#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>

#include "base/processor.h"
#include "math/arc_series.h"
#include "math/double_double.h"
#include "math/exact_math.h"

namespace talvek::exact {

namespace {

constexpr DoubleDouble kPi{0x1.921fb54442d18p+1, 0x1.1a62633145c07p-53};
constexpr DoubleDouble kHalfPi{kPi.hi / 2, kPi.lo / 2};

/// `condition ? a : b` without a branch, which would often be mispredicted.
double choose(bool condition, double a, double b) {
    const std::uint64_t mask = std::uint64_t{0} - static_cast<std::uint64_t>(condition);
    return std::bit_cast<double>((std::bit_cast<std::uint64_t>(a) & mask) | (std::bit_cast<std::uint64_t>(b) & ~mask));
}

/// An angle's place: the result is start + factor * angle.
struct Placement {
    DoubleDouble start;
    double factor;
};

template <typename T>
inline Parts<T> placeAt(T startHigh, T startLow, T factor, Parts<T> angle) {
    const T turned = factor * angle.hi;
    const T sum = startHigh + turned;
    return {sum, (turned - (sum - startHigh)) + (startLow + factor * angle.lo)};
}

inline Parts<double> place(const Placement& placement, Parts<double> angle) {
    return placeAt(placement.start.hi, placement.start.lo, placement.factor, angle);
}

/// The doubles next to the ends of the range in which the exact value lies: mostly the same double.
template <typename T>
struct Bounds {
    T lower;
    T upper;
};

template <typename T>
inline Bounds<T> roundBounds(Parts<T> value) {
    const T margin = value.hi * 0x1.8p-64;
    return {value.hi + (value.lo - margin), value.hi + (value.lo + margin)};
}

/// The arc tangent of y/x for 0 <= y <= x.
DoubleDouble preciseOctantAngle(DoubleDouble y, DoubleDouble x) {
    const int index = (static_cast<int>(y.hi / x.hi * (2.0 * kNodesPerUnit)) + 1) / 2;
    const double c = index / kNodesPerUnit;
    const DoubleDouble rest = (y - x * c) / (x + y * c);
    return kArcTangentNodes[static_cast<std::size_t>(index)].value() + arcTangentSeries<8>(rest, -(rest * rest));
}

/// The same for any point of the first quadrant.
DoubleDouble preciseQuadrantAngle(DoubleDouble y, DoubleDouble x) {
    return y.hi > x.hi ? kHalfPi - preciseOctantAngle(x, y) : preciseOctantAngle(y, x);
}

double preciseArcCosine(double x) {
    const double size = std::fabs(x);
    const DoubleDouble sine = squareRoot(twoSum(1.0, -size) * twoSum(1.0, size));
    const DoubleDouble angle = preciseQuadrantAngle(sine, DoubleDouble{size});
    return std::signbit(x) ? (kPi - angle).hi : angle.hi;
}

/// The arc tangent of y/x * 2^exponent, which is below 2^-30. The quotient can come so close to the middle between two
/// doubles that it takes the exact remainder to tell on which side the arc tangent lies.
ScaledSum preciseSmallAngle(double y, double x, int exponent) {
    const double quotient = y / x;
    const DoubleDouble product = twoProduct(quotient, x);
    const DoubleDouble remainder = twoSum(y - product.hi, -product.lo);
    const double next = remainder.hi / x;
    const double last = (remainder + -twoProduct(next, x)).hi / x;
    // Any number of this size tells a little less than the quotient from the quotient itself.
    const double square = exponent < -100 ? 0x1p-200 : scaleByPowerOfTwo(quotient * quotient, 2 * exponent);
    return {{quotient, addToOdd(next, last - quotient * square / 3.0)}, exponent};
}

/// The angle of a point in the first quadrant, or in the second if mirrored. The coordinates are finite, above zero.
ScaledSum preciseAngle(double y, double x, bool isMirrored) {
    const FractionExponent a = splitExponent(y);
    const FractionExponent b = splitExponent(x);
    const int steepness = a.exponent - b.exponent;
    if (steepness < -32 && !isMirrored) {
        return preciseSmallAngle(a.fraction, b.fraction, steepness);
    }
    // An even greater difference would change nothing in the digits next to pi or pi/2.
    const DoubleDouble scaledY{a.fraction * powerOfTwo(std::clamp(steepness, -200, 0))};
    const DoubleDouble scaledX{b.fraction * powerOfTwo(std::clamp(-steepness, -200, 0))};
    const DoubleDouble angle = preciseQuadrantAngle(scaledY, scaledX);
    return {isMirrored ? kPi - angle : angle};
}

/// The angle of a point with a coordinate that is zero, infinite or NaN, without its sign.
double specialAngle(double y, double x) {
    if (std::isnan(y) || std::isnan(x)) {
        return std::numeric_limits<double>::quiet_NaN();
    }
    const bool isFar = std::isinf(y) || std::isinf(x);
    const bool hasY = isFar ? std::isinf(y) : y != 0.0;
    const bool hasX = isFar ? std::isinf(x) : x != 0.0;
    const double angle = hasY ? (hasX ? kPi.hi / 4 : kPi.hi / 2) : 0.0;
    return std::signbit(x) ? kPi.hi - angle : angle;
}

bool isOrdinary(double value) {
    return value != 0.0 && std::isfinite(value);
}

/// The angle for arguments the quick evaluation cannot take or leaves open.
double rareArcTangent2(double y, double x) {
    const double angle = isOrdinary(y) && isOrdinary(x)
                             ? roundToDouble(preciseAngle(std::fabs(y), std::fabs(x), std::signbit(x)))
                             : specialAngle(y, x);
    return std::isnan(angle) ? angle : std::copysign(angle, y);
}

float rareArcTangent2f(float y, float x) {
    if (!isOrdinary(y) || !isOrdinary(x)) {
        return static_cast<float>(rareArcTangent2(y, x));
    }
    const ScaledSum angle = preciseAngle(std::fabs(y), std::fabs(x), std::signbit(x));
    const double rounded = scaleByPowerOfTwo(addToOdd(angle.sum.hi, angle.sum.lo), angle.exponent);
    return static_cast<float>(std::copysign(rounded, y));
}

/// Where the angle of a point with these properties lies, given the one between it and the nearest axis.
const Placement& octantPlacement(bool isSteep, bool isMirrored) {
    static constexpr std::array<Placement, 4> kPlacements{Placement{{0.0, 0.0}, 1.0}, Placement{kHalfPi, -1.0},
                                                          Placement{kPi, -1.0}, Placement{kHalfPi, 1.0}};
    return kPlacements[(isMirrored ? 2U : 0U) + (isSteep ? 1U : 0U)];
}

/// Where the angles of small and of large arguments lie, above zero and below, given an arc sine.
constexpr std::array<Placement, 4> kArcCosinePlacements{Placement{kHalfPi, -1.0}, Placement{kHalfPi, 1.0},
                                                        Placement{{0.0, 0.0}, 2.0}, Placement{kPi, -2.0}};

#ifdef TALVEK_HAS_SSE2

constexpr std::size_t kBlock = 128;

DoublePair select(__m128d mask, DoublePair a, DoublePair b) {
    return _mm_or_pd(_mm_and_pd(mask, a.both), _mm_andnot_pd(mask, b.both));
}

__m128d sizeInside(__m128d x) {
    const __m128d size = _mm_andnot_pd(_mm_set1_pd(-0.0), x);
    return _mm_and_pd(size, _mm_cmplt_pd(size, _mm_set1_pd(1.0)));
}

/// The argument of the arc sine, in two parts, that gives the arc cosine of each of two values. Values that have none
/// give that of 0.
void findSinePair(const double* values, double* sines, double* errors) {
    const DoublePair size = sizeInside(_mm_loadu_pd(values));
    const DoublePair square = 0.5 - 0.5 * size;
    const DoublePair root = squareRoot(square);
    const DoublePair high = clearLowBits(root);
    const DoublePair rootError = ((square - high * high) - (root - high) * (root + high)) * (0.5 / root);
    const __m128d isSmall = _mm_cmple_pd(size.both, _mm_set1_pd(0.5));
    store(sines, select(isSmall, size, root));
    store(errors, _mm_andnot_pd(isSmall, rootError.both));
}

/// Which of two values have an arc cosine that the quick evaluation decides; these are replaced by it.
void replacePair(double* values, const double* sines, const double* errors) {
    const __m128d x = _mm_loadu_pd(values);
    const __m128d isSmall = _mm_cmple_pd(sizeInside(x), _mm_set1_pd(0.5));
    const Parts<DoublePair> angle = evaluate(kArcSineNodes, _mm_loadu_pd(sines), _mm_loadu_pd(errors));
    // The same places as in the table: half pi for small values, 0 or pi and the angle twice for large ones.
    const __m128d isBelow = _mm_castsi128_pd(_mm_shuffle_epi32(_mm_srai_epi32(_mm_castpd_si128(x), 31), 0xf5));
    const DoublePair startHigh = select(isSmall, kHalfPi.hi, _mm_and_pd(isBelow, _mm_set1_pd(kPi.hi)));
    const DoublePair startLow = select(isSmall, kHalfPi.lo, _mm_and_pd(isBelow, _mm_set1_pd(kPi.lo)));
    const DoublePair factor = _mm_xor_pd(_mm_and_pd(x, _mm_set1_pd(-0.0)), select(isSmall, -1.0, 2.0).both);
    const Bounds<DoublePair> bounds = roundBounds(placeAt(startHigh, startLow, factor, angle));
    const __m128d isInside = _mm_cmplt_pd(_mm_andnot_pd(_mm_set1_pd(-0.0), x), _mm_set1_pd(1.0));
    const int decided = _mm_movemask_pd(_mm_and_pd(isInside, _mm_cmpeq_pd(bounds.lower.both, bounds.upper.both)));
    const double alone[2] = {values[0], values[1]};
    store(values, bounds.lower);
    if (decided != 3) {
        values[0] = (decided & 1) != 0 ? values[0] : arcCosine(alone[0]);
        values[1] = (decided & 2) != 0 ? values[1] : arcCosine(alone[1]);
    }
}

/// By the same arithmetic as for one value alone. Two stages, so that the processor finds work beside the square roots.
void replaceBlock(std::span<double> values) {
    std::array<double, kBlock> sines;
    std::array<double, kBlock> errors;
    for (std::size_t i = 0; i < values.size(); i += 2) {
        findSinePair(&values[i], &sines[i], &errors[i]);
    }
    for (std::size_t i = 0; i < values.size(); i += 2) {
        replacePair(&values[i], &sines[i], &errors[i]);
    }
}

#endif

}  // namespace

double arcCosine(double x) {
    const double size = std::fabs(x);
    if (!(size < 1.0)) {
        return x == 1.0 ? 0.0 : x == -1.0 ? kPi.hi : std::numeric_limits<double>::quiet_NaN();
    }
    // Near 1 the angle follows from half of it, whose sine is this root.
    const double square = 0.5 - 0.5 * size;
    const double root = std::sqrt(square);
    const double high = clearLowBits(root);
    const double rootError = ((square - high * high) - (root - high) * (root + high)) * (0.5 / root);
    const bool isSmall = size <= 0.5;
    const Parts<double> angle = evaluate(kArcSineNodes, choose(isSmall, size, root), choose(isSmall, 0.0, rootError));
    const Parts<double> result = place(kArcCosinePlacements[(isSmall ? 0U : 2U) + (std::signbit(x) ? 1U : 0U)], angle);
    const Bounds<double> bounds = roundBounds(result);
    return bounds.lower == bounds.upper ? bounds.lower : preciseArcCosine(x);
}

void arcCosines(std::span<double> values) {
#ifdef TALVEK_HAS_SSE2
    for (std::size_t size = 0; values.size() >= 2; values = values.subspan(size)) {
        size = std::min(kBlock, values.size() / 2 * 2);
        replaceBlock(values.first(size));
    }
#endif
    for (double& value : values) {
        value = arcCosine(value);
    }
}

double arcTangent2(double y, double x) {
    const double sizeY = std::fabs(y);
    const double sizeX = std::fabs(x);
    const bool isSteep = sizeY > sizeX;
    const double longer = isSteep ? sizeY : sizeX;
    const double shorter = isSteep ? sizeX : sizeY;
    if (!(longer < 0x1p900 && longer > 0x1p-900 && shorter > longer * 0x1p-60)) {
        return rareArcTangent2(y, x);
    }
    const double quotient = shorter / longer;
    const double highQuotient = clearLowBits(quotient);
    const double highLonger = clearLowBits(longer);
    const double remainder = (shorter - highQuotient * highLonger) - highQuotient * (longer - highLonger) -
                             (quotient - highQuotient) * longer;
    const Parts<double> angle = evaluate(kArcTangentNodes, quotient, remainder * (1.0 / longer));
    const Parts<double> result = place(octantPlacement(isSteep, std::signbit(x)), angle);
    const Bounds<double> bounds = roundBounds(result);
    return bounds.lower == bounds.upper ? std::copysign(bounds.lower, y) : rareArcTangent2(y, x);
}

float arcTangent2f(float y, float x) {
    const double sizeY = std::fabs(y);
    const double sizeX = std::fabs(x);
    const bool isSteep = sizeY > sizeX;
    const double longer = isSteep ? sizeY : sizeX;
    const double shorter = isSteep ? sizeX : sizeY;
    if (!(std::isfinite(longer) && shorter > 0.0)) {
        return rareArcTangent2f(y, x);
    }
    const Parts<double> angle = evaluate(kArcTangentNodes, shorter / longer, 0.0);
    const Parts<double> result = place(octantPlacement(isSteep, std::signbit(x)), angle);
    const double value = std::copysign(result.hi + result.lo, y);
    const float rounded = static_cast<float>(value * (1.0 - 0x1p-49));
    return rounded == static_cast<float>(value * (1.0 + 0x1p-49)) ? rounded : rareArcTangent2f(y, x);
}

}  // namespace talvek::exact
