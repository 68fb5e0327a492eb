// Arc cosine and arc tangent. A quick evaluation gives the result to about 64 bits. If those leave open which double is
// next to the exact value, which happens about once in a thousand calls, a slow one of about 100 bits decides.
#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>

#include "base/double_double.h"
#include "base/exact_math.h"

namespace talvek::exact {

namespace {

constexpr DoubleDouble kPi{0x1.921fb54442d18p+1, 0x1.1a62633145c07p-53};
constexpr DoubleDouble kHalfPi{kPi.hi / 2, kPi.lo / 2};

constexpr double clearLowBits(double value) {
    return std::bit_cast<double>(std::bit_cast<std::uint64_t>(value) & ~std::uint64_t{0x7ffffff});
}

/// `condition ? a : b` without a branch, which would often be mispredicted.
double choose(bool condition, double a, double b) {
    const std::uint64_t mask = std::uint64_t{0} - static_cast<std::uint64_t>(condition);
    return std::bit_cast<double>((std::bit_cast<std::uint64_t>(a) & mask) | (std::bit_cast<std::uint64_t>(b) & ~mask));
}

/// The Taylor series of an arc function f at one argument c: value + slope h + rest[0] h^2 + rest[1] h^3 + ...
struct Node {
    DoubleDouble value;
    /// The high part has 26 bits.
    DoubleDouble slope;
    std::array<double, 9> rest;
    /// Makes two cache lines of a node, and its address a shift away from its index.
    std::array<double, 3> padding;
};

constexpr double kNodesPerUnit = 64.0;
constexpr std::size_t kMostTerms = 24;
using Series = std::array<DoubleDouble, kMostTerms>;

/// Continues a series from its first two terms. (1 - x^2) f'' = x f' for the arc sine, which gives the others.
constexpr void completeArcSine(Series& terms, double c) {
    for (std::size_t i = 0; i + 2 < terms.size(); ++i) {
        const double n = static_cast<double>(i);
        terms[i + 2] =
            (terms[i + 1] * (c * (n + 1) * (2 * n + 1)) + terms[i] * (n * n)) / ((1 - c * c) * (n + 1) * (n + 2));
    }
}

/// The same for the arc tangent, for which (1 + x^2) f'' = -2 x f'.
constexpr void completeArcTangent(Series& terms, double c) {
    for (std::size_t i = 0; i + 2 < terms.size(); ++i) {
        const double n = static_cast<double>(i);
        terms[i + 2] = -(terms[i + 1] * (2 * c * (n + 1)) + terms[i] * n) / ((1 + c * c) * (n + 2));
    }
}

constexpr Node makeNode(const Series& terms) {
    const double slope = clearLowBits(terms[1].hi);
    Node node{terms[0], {slope, (terms[1] + -slope).hi}, {}, {}};
    for (std::size_t i = 0; i < node.rest.size(); ++i) {
        node.rest[i] = terms[i + 2].hi;
    }
    return node;
}

/// The first two terms of the series at the next node, from the series at this one.
constexpr Series continueSeries(const Series& terms) {
    constexpr double kStep = 1.0 / kNodesPerUnit;
    Series next{};
    for (std::size_t i = terms.size(); i-- > 0;) {
        next[0] = next[0] * kStep + terms[i];
        if (i > 0) {
            next[1] = next[1] * kStep + terms[i] * static_cast<double>(i);
        }
    }
    return next;
}

/// Nodes at 0, 1/64, 2/64, ... for a function with f(0) = 0 and f'(0) = 1.
template <std::size_t Count>
constexpr std::array<Node, Count> makeNodes(void (*complete)(Series& terms, double c)) {
    std::array<Node, Count> nodes{};
    Series terms{DoubleDouble{0.0}, DoubleDouble{1.0}};
    for (std::size_t i = 0; i < Count; ++i) {
        complete(terms, static_cast<double>(i) / kNodesPerUnit);
        nodes[i] = makeNode(terms);
        terms = continueSeries(terms);
    }
    return nodes;
}

alignas(64) constexpr std::array<Node, 33> kArcSineNodes = makeNodes<33>(completeArcSine);
alignas(64) constexpr std::array<Node, 65> kArcTangentNodes = makeNodes<65>(completeArcTangent);

/// f(x + low) for an x above zero, with a relative error below 2^-64. The two parts of the result may overlap.
template <std::size_t Count>
inline DoubleDouble evaluate(const std::array<Node, Count>& nodes, double x, double low) {
    // The sum has the weight of a node as that of its last bit.
    constexpr double kAligner = 0x1p52 / kNodesPerUnit;
    const double aligned = x + kAligner;
    const Node& node = nodes[std::bit_cast<std::uint64_t>(aligned) % 128];
    const double h = x - (aligned - kAligner);
    const double high = clearLowBits(h);
    const auto pair = [&](std::size_t i) { return node.rest[i] + node.rest[i + 1] * h; };
    const double square = h * h;
    const double rest =
        (pair(0) + square * pair(2)) + square * square * (pair(4) + square * (pair(6) + square * node.rest[8]));
    const double slopeHere = node.slope.hi + 2.0 * h * node.rest[0];
    const double small = (node.slope.hi * (h - high) + node.slope.lo * h) + slopeHere * low;
    const DoubleDouble sum = quickTwoSum(node.value.hi, node.slope.hi * high);
    return {sum.hi, sum.lo + ((node.value.lo + rest * square) + small)};
}

/// An angle's place: the result is start + factor * angle.
struct Placement {
    DoubleDouble start;
    double factor;
};

inline DoubleDouble place(const Placement& placement, DoubleDouble angle) {
    const DoubleDouble sum = quickTwoSum(placement.start.hi, placement.factor * angle.hi);
    return {sum.hi, sum.lo + (placement.start.lo + placement.factor * angle.lo)};
}

/// The doubles next to the ends of the range in which the exact value lies: mostly the same double.
struct Bounds {
    double lower;
    double upper;
};

inline Bounds roundBounds(DoubleDouble value) {
    const double margin = value.hi * 0x1.8p-64;
    return {value.hi + (value.lo - margin), value.hi + (value.lo + margin)};
}

/// The arc tangent of y/x for 0 <= y <= x.
DoubleDouble preciseOctantAngle(DoubleDouble y, DoubleDouble x) {
    const int index = (static_cast<int>(y.hi / x.hi * (2.0 * kNodesPerUnit)) + 1) / 2;
    const double c = index / kNodesPerUnit;
    const DoubleDouble rest = (y - x * c) / (x + y * c);
    return kArcTangentNodes[static_cast<std::size_t>(index)].value + arcTangentSeries<8>(rest, -(rest * rest));
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

}  // namespace

double arcCosine(double x) {
    static constexpr std::array<Placement, 4> kPlacements{Placement{kHalfPi, -1.0}, Placement{kHalfPi, 1.0},
                                                          Placement{{0.0, 0.0}, 2.0}, Placement{kPi, -2.0}};
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
    const DoubleDouble angle = evaluate(kArcSineNodes, choose(isSmall, size, root), choose(isSmall, 0.0, rootError));
    const DoubleDouble result = place(kPlacements[(isSmall ? 0U : 2U) + (std::signbit(x) ? 1U : 0U)], angle);
    const Bounds bounds = roundBounds(result);
    return bounds.lower == bounds.upper ? bounds.lower : preciseArcCosine(x);
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
    const DoubleDouble angle = evaluate(kArcTangentNodes, quotient, remainder * (1.0 / longer));
    const DoubleDouble result = place(octantPlacement(isSteep, std::signbit(x)), angle);
    const Bounds bounds = roundBounds(result);
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
    const DoubleDouble angle = evaluate(kArcTangentNodes, shorter / longer, 0.0);
    const DoubleDouble result = place(octantPlacement(isSteep, std::signbit(x)), angle);
    const double value = std::copysign(result.hi + result.lo, y);
    const float rounded = static_cast<float>(value * (1.0 - 0x1p-49));
    return rounded == static_cast<float>(value * (1.0 + 0x1p-49)) ? rounded : rareArcTangent2f(y, x);
}

}  // namespace talvek::exact
