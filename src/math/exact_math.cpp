// Power and logarithm.
#include "math/exact_math.h"

#include <array>
#include <cmath>
#include <cstddef>
#include <limits>
#include <optional>

#include "math/double_double.h"

namespace talvek::exact {

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

bool isInteger(double value) {
    return value == std::floor(value);
}

/// ln 2 as a number of 38 bits, whose products with small integers are exact, and the rest.
constexpr double kLn2High = 0x1.62e42fefa0000p-1;
constexpr DoubleDouble kLn2Low{0x1.cf79abc9e3b3ap-40, -0x1.ff0342542fc33p-94};

constexpr double kNodesPerUnit = 32.0;
constexpr std::size_t kFirstNode = 23;
constexpr std::size_t kLastNode = 45;

/// The natural logarithms of 23/32, 24/32, ... 45/32.
constexpr std::array<DoubleDouble, kLastNode - kFirstNode + 1> kNodeLogarithms = [] {
    std::array<DoubleDouble, kLastNode - kFirstNode + 1> logarithms{};
    for (std::size_t i = 0; i < logarithms.size(); ++i) {
        const double node = static_cast<double>(kFirstNode + i);
        const DoubleDouble u = DoubleDouble{node - kNodesPerUnit} / (node + kNodesPerUnit);
        logarithms[i] = arcTangentSeries<22>(u, u * u) * 2.0;
    }
    return logarithms;
}();

/// A number above zero as fraction * 2^exponent, with a fraction near 1, and the node next to the fraction.
struct Reduced {
    double fraction;
    double exponent;
    double node;
    DoubleDouble nodeLogarithm;
};

Reduced reduceToNode(double x) {
    const FractionExponent parts = splitExponent(x);
    // As a number, because a branch would often be mispredicted.
    const int isHigh = parts.fraction > 1.40625 ? 1 : 0;
    const double fraction = parts.fraction * (1.0 - 0.5 * isHigh);
    const std::size_t node = (static_cast<std::size_t>(2.0 * kNodesPerUnit * fraction) + 1) / 2;
    return {fraction, static_cast<double>(parts.exponent + isHigh), static_cast<double>(node) / kNodesPerUnit,
            kNodeLogarithms[node - kFirstNode]};
}

/// ln x, with a relative error of about 2^-50.
double quickLogarithm(double x) {
    const Reduced a = reduceToNode(x);
    const double u = (a.fraction - a.node) / (a.fraction + a.node);
    const double z = u * u;
    const double series = 2.0 * u * (1.0 + z * (1.0 / 3.0 + z * (1.0 / 5.0 + z * (1.0 / 7.0 + z * (1.0 / 9.0)))));
    return a.exponent * kLn2High + (a.nodeLogarithm.hi + (series + a.exponent * kLn2Low.hi));
}

/// ln x, with a relative error of about 2^-103.
DoubleDouble preciseLogarithm(double x) {
    const Reduced a = reduceToNode(x);
    const DoubleDouble u = DoubleDouble{a.fraction - a.node} / twoSum(a.fraction, a.node);
    const DoubleDouble series = arcTangentSeries<9>(u, u * u) * 2.0;
    return (series + a.nodeLogarithm + kLn2Low * a.exponent) + kLn2High * a.exponent;
}

/// e^x - 1 from the terms up to x^Terms.
template <int Terms>
constexpr DoubleDouble exponentialSeries(DoubleDouble x) {
    constexpr std::array<DoubleDouble, Terms + 1> kReciprocalFactorials = [] {
        std::array<DoubleDouble, Terms + 1> reciprocals{DoubleDouble{1.0}};
        for (std::size_t i = 1; i < reciprocals.size(); ++i) {
            reciprocals[i] = reciprocals[i - 1] / static_cast<double>(i);
        }
        return reciprocals;
    }();
    DoubleDouble sum{};
    for (std::size_t i = Terms; i >= 2; --i) {
        sum = (sum + kReciprocalFactorials[i]) * x;
    }
    return x + x * sum;
}

constexpr int kRootsPerOctave = 16;

/// 2^(0/16), 2^(1/16), ... 2^(15/16).
constexpr std::array<DoubleDouble, kRootsPerOctave> kRoots = [] {
    std::array<DoubleDouble, kRootsPerOctave> roots{};
    for (int i = 0; i < kRootsPerOctave; ++i) {
        const double part = static_cast<double>(i) / kRootsPerOctave;
        roots[static_cast<std::size_t>(i)] = exponentialSeries<28>(kLn2Low * part + kLn2High * part) + 1.0;
    }
    return roots;
}();

/// e^x for -750 < x < 750, with a relative error of about 2^-103, and near 1 even with one that small in e^x - 1.
ScaledSum exponential(DoubleDouble x) {
    const double steps = std::floor(x.hi * (kRootsPerOctave / kLn2High) + 0.5);
    const double octaves = steps / kRootsPerOctave;
    const double wholeOctaves = std::floor(octaves);
    const DoubleDouble& root = kRoots[static_cast<std::size_t>((octaves - wholeOctaves) * kRootsPerOctave)];
    const DoubleDouble growth = root * exponentialSeries<14>((x + -kLn2High * octaves) - kLn2Low * octaves);
    const DoubleDouble sum = twoSum(root.hi, growth.hi);
    return {{sum.hi, addToOdd(sum.lo, growth.lo + root.lo)}, static_cast<int>(wholeOctaves)};
}

/// base^exponent for an exponent of 1, 2, 3, ..., provided that all powers before that one are doubles. The base is at
/// least 1 and below 2.
std::optional<DoubleDouble> multiplyExactly(double base, int exponent) {
    DoubleDouble result{base};
    for (int i = 1; i < exponent; ++i) {
        if (result.lo != 0.0) {
            return std::nullopt;
        }
        result = twoProduct(result.hi, base);
    }
    return result;
}

/// The square root, if it is a double.
std::optional<FractionExponent> exactRoot(FractionExponent value) {
    const int parity = value.exponent & 1;
    const double square = parity == 0 ? value.fraction : value.fraction * 2.0;
    const double root = std::sqrt(square);
    const DoubleDouble product = twoProduct(root, root);
    if (product.hi != square || product.lo != 0.0) {
        return std::nullopt;
    }
    return FractionExponent{root, (value.exponent - parity) / 2};
}

/// base^exponent if it lies in the middle between two doubles or is a double: an approximation cannot tell such a
/// number from its surroundings. It has 54 bits at most and follows from exact square roots and products. Hence, unless
/// it is a power of two, the exponent is 34 at most, as 3^34 has 54 bits, and a multiple of 1/32, as 3^32 is the
/// highest power of three that has a square root taken as often.
std::optional<ScaledSum> exactPower(double base, double exponent) {
    FractionExponent root = splitExponent(base);
    if (root.fraction == 1.0) {
        const DoubleDouble product = twoProduct(root.exponent, exponent);
        const bool isExact = product.lo == 0.0 && isInteger(product.hi);
        return isExact ? std::optional(ScaledSum{{1.0, 0.0}, static_cast<int>(product.hi)}) : std::nullopt;
    }
    if (!(exponent > 0.0 && exponent <= 34.0 && isInteger(exponent * 32.0))) {
        return std::nullopt;
    }
    for (; !isInteger(exponent); exponent *= 2.0) {
        const std::optional<FractionExponent> next = exactRoot(root);
        if (!next) {
            return std::nullopt;
        }
        root = *next;
    }
    const int factors = static_cast<int>(exponent);
    const std::optional<DoubleDouble> product = multiplyExactly(root.fraction, factors);
    return product ? std::optional(ScaledSum{*product, root.exponent * factors}) : std::nullopt;
}

/// base^exponent for finite numbers, and a base above zero.
double positivePower(double base, double exponent) {
    if (base == 1.0 || std::fabs(exponent) < 0x1p-70) {
        return 1.0;
    }
    // The simplest powers are operations that are themselves correctly rounded.
    if (exponent == 1.0 || exponent == 2.0) {
        return exponent == 1.0 ? base : base * base;
    }
    if (exponent == 0.5 || exponent == -1.0) {
        return exponent == 0.5 ? std::sqrt(base) : 1.0 / base;
    }
    const bool isLarge = (base > 1.0) == (exponent > 0.0);
    const double limit = isLarge ? kInfinity : 0.0;
    if (std::fabs(exponent) > 0x1p70) {
        return limit;
    }
    const DoubleDouble logarithm = preciseLogarithm(base) * exponent;
    if (std::fabs(logarithm.hi) > 750.0) {
        return limit;
    }
    const std::optional<ScaledSum> exact = exactPower(base, exponent);
    return roundToDouble(exact ? *exact : exponential(logarithm));
}

/// base^exponent for a base or an exponent that is infinite, or a base of zero, without its sign.
double limitPower(double base, double exponent) {
    const double size = std::fabs(base);
    if (size == 1.0) {
        return 1.0;
    }
    return (size > 1.0) == (exponent > 0.0) ? kInfinity : 0.0;
}

}  // namespace

double power(double base, double exponent) {
    if (base == 1.0 || exponent == 0.0) {
        return 1.0;
    }
    if (std::isnan(base) || std::isnan(exponent)) {
        return kNaN;
    }
    const bool isOdd = isInteger(exponent) && !isInteger(exponent / 2.0);
    const double sign = std::signbit(base) && isOdd ? -1.0 : 1.0;
    if (base == 0.0 || std::isinf(base) || std::isinf(exponent)) {
        return sign * limitPower(base, exponent);
    }
    if (base < 0.0 && !isInteger(exponent)) {
        return kNaN;
    }
    return sign * positivePower(std::fabs(base), exponent);
}

float logarithmf(float x) {
    if (!(x > 0.0F && x < std::numeric_limits<float>::infinity())) {
        return x == 0.0F ? -std::numeric_limits<float>::infinity()
                         : (x > 0.0F ? x : std::numeric_limits<float>::quiet_NaN());
    }
    const double value = quickLogarithm(x);
    const float rounded = static_cast<float>(value * (1.0 - 0x1p-48));
    if (rounded == static_cast<float>(value * (1.0 + 0x1p-48))) {
        return rounded;
    }
    const DoubleDouble precise = preciseLogarithm(x);
    return static_cast<float>(addToOdd(precise.hi, precise.lo));
}

}  // namespace talvek::exact
