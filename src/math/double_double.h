// Numbers of about 106 bits, held as the unevaluated sum of two doubles, and the exact sums and products of doubles
// they are made of. Everything needs IEEE doubles rounded to nearest and neither a fused multiply-add nor a library.
// Operands have to stay clear of overflow and underflow: between 2^-450 and 2^450 nothing can go wrong.
#pragma once

#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>

namespace talvek::exact {

// Options for "fast" arithmetic also make this false.
static_assert(std::numeric_limits<double>::is_iec559);

/// The value `hi + lo`; `hi` is that sum rounded to a double.
struct DoubleDouble {
    double hi = 0.0;
    double lo = 0.0;
};

/// `a + b`, exactly, for a `b` that is no larger than `a`, or an `a` of zero.
constexpr DoubleDouble quickTwoSum(double a, double b) {
    const double sum = a + b;
    return {sum, b - (sum - a)};
}

/// `a + b`, exactly.
constexpr DoubleDouble twoSum(double a, double b) {
    const double sum = a + b;
    const double shareOfB = sum - a;
    return {sum, (a - (sum - shareOfB)) + (b - shareOfB)};
}

/// `a` in two parts of 26 bits, whose products with other such parts are exact.
constexpr DoubleDouble split(double a) {
    const double scaled = 134217729.0 * a;
    const double high = scaled - (scaled - a);
    return {high, a - high};
}

/// `a * b`, exactly.
constexpr DoubleDouble twoProduct(double a, double b) {
    const double product = a * b;
    const DoubleDouble x = split(a);
    const DoubleDouble y = split(b);
    return {product, ((x.hi * y.hi - product) + x.hi * y.lo + x.lo * y.hi) + x.lo * y.lo};
}

constexpr DoubleDouble operator-(DoubleDouble a) {
    return {-a.hi, -a.lo};
}

constexpr DoubleDouble operator+(DoubleDouble a, double b) {
    const DoubleDouble sum = twoSum(a.hi, b);
    return quickTwoSum(sum.hi, sum.lo + a.lo);
}

constexpr DoubleDouble operator+(DoubleDouble a, DoubleDouble b) {
    const DoubleDouble high = twoSum(a.hi, b.hi);
    const DoubleDouble low = twoSum(a.lo, b.lo);
    const DoubleDouble sum = quickTwoSum(high.hi, high.lo + low.hi);
    return quickTwoSum(sum.hi, sum.lo + low.lo);
}

constexpr DoubleDouble operator-(DoubleDouble a, DoubleDouble b) {
    return a + -b;
}

constexpr DoubleDouble operator*(DoubleDouble a, double b) {
    const DoubleDouble product = twoProduct(a.hi, b);
    return quickTwoSum(product.hi, product.lo + a.lo * b);
}

constexpr DoubleDouble operator*(DoubleDouble a, DoubleDouble b) {
    const DoubleDouble product = twoProduct(a.hi, b.hi);
    return quickTwoSum(product.hi, product.lo + (a.hi * b.lo + a.lo * b.hi));
}

constexpr DoubleDouble operator/(DoubleDouble a, DoubleDouble b) {
    const double first = a.hi / b.hi;
    const DoubleDouble rest = a - b * first;
    const double second = rest.hi / b.hi;
    const double third = (rest - b * second).hi / b.hi;
    return quickTwoSum(first, second) + third;
}

constexpr DoubleDouble operator/(DoubleDouble a, double b) {
    return a / DoubleDouble{b};
}

/// The square root of a number above zero.
inline DoubleDouble squareRoot(DoubleDouble a) {
    const double root = std::sqrt(a.hi);
    const DoubleDouble rest = a - twoProduct(root, root);
    return quickTwoSum(root, rest.hi / (2.0 * root));
}

/// 1/1, 1/3, 1/5, ...
template <std::size_t Count>
constexpr std::array<DoubleDouble, Count> kOddReciprocals = [] {
    std::array<DoubleDouble, Count> reciprocals{};
    for (std::size_t i = 0; i < Count; ++i) {
        reciprocals[i] = DoubleDouble{1.0} / (2.0 * static_cast<double>(i) + 1.0);
    }
    return reciprocals;
}();

/// u + u z/3 + u z^2/5 + ... up to the power `Terms` of z: the arc tangent of u if z is -u^2, and its hyperbolic
/// counterpart if z is +u^2.
template <std::size_t Terms>
constexpr DoubleDouble arcTangentSeries(DoubleDouble u, DoubleDouble z) {
    DoubleDouble sum{};
    for (std::size_t i = Terms; i > 0; --i) {
        sum = (sum + kOddReciprocals<Terms + 1>[i]) * z;
    }
    return u + u * sum;
}

/// `a + b`; where that is not a double, the neighbour with an odd last bit. Rounding the result again to fewer bits, or
/// adding it to a much larger number, then gives what rounding the exact sum would have given.
inline double addToOdd(double a, double b) {
    const DoubleDouble sum = twoSum(a, b);
    const std::uint64_t bits = std::bit_cast<std::uint64_t>(sum.hi);
    if (sum.lo == 0.0 || (bits & 1U) != 0) {
        return sum.hi;
    }
    return std::bit_cast<double>((sum.lo > 0.0) == (sum.hi > 0.0) ? bits + 1 : bits - 1);
}

/// 2^exponent, for exponents of -1022 to 1023.
constexpr double powerOfTwo(int exponent) {
    return std::bit_cast<double>(static_cast<std::uint64_t>(1023 + exponent) << 52U);
}

/// `value` * 2^exponent, exactly or infinite; the result must not lose bits below the smallest double.
constexpr double scaleByPowerOfTwo(double value, int exponent) {
    const int half = exponent / 2;
    return value * powerOfTwo(half) * powerOfTwo(exponent - half);
}

/// (hi + lo) * 2^exponent: numbers of any size, without overflow or underflow.
struct ScaledSum {
    DoubleDouble sum;
    int exponent = 0;
};

/// The double next to `value`, which is above zero with a `sum.hi` between 2^-60 and 2^60; infinite if too large.
inline double roundToDouble(const ScaledSum& value) {
    constexpr int kLowestBit = -1074;
    if (value.exponent < -2000) {
        return 0.0;
    }
    const DoubleDouble& sum = value.sum;
    // The last bit of this number has the weight of the smallest double.
    const double aligner = value.exponent > -900 ? 0.0 : powerOfTwo(52 + kLowestBit - value.exponent);
    if (sum.hi >= aligner) {
        return scaleByPowerOfTwo(sum.hi + sum.lo, value.exponent);
    }
    const DoubleDouble aligned = twoSum(aligner, sum.hi);
    const double rounded = aligned.hi + addToOdd(aligned.lo, sum.lo);
    return scaleByPowerOfTwo(rounded - aligner, value.exponent);
}

/// A finite number above zero as fraction * 2^exponent, with a fraction of at least 1 and less than 2.
struct FractionExponent {
    double fraction;
    int exponent;
};

inline FractionExponent splitExponent(double value) {
    constexpr std::uint64_t kFractionBits = (std::uint64_t{1} << 52U) - 1;
    constexpr int kSubnormalShift = 64;
    const bool isSubnormal = value < powerOfTwo(-1022);
    const std::uint64_t bits = std::bit_cast<std::uint64_t>(isSubnormal ? value * powerOfTwo(kSubnormalShift) : value);
    const int exponent = static_cast<int>(bits >> 52U) - 1023 - (isSubnormal ? kSubnormalShift : 0);
    return {std::bit_cast<double>((bits & kFractionBits) | std::bit_cast<std::uint64_t>(1.0)), exponent};
}

}  // namespace talvek::exact
