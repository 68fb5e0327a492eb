// Arc sine and arc tangent by their Taylor series at the nearest of many nodes, to about 64 bits, for one argument or
// for two at once.
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

#include "base/processor.h"
#include "math/double_double.h"
#include "math/double_pair.h"

namespace talvek::exact {

constexpr std::uint64_t kLowBits = 0x7ffffff;

constexpr double clearLowBits(double value) {
    return std::bit_cast<double>(std::bit_cast<std::uint64_t>(value) & ~kLowBits);
}

/// The Taylor series of an arc function f at one argument c: value + slope h + rest[0] h^2 + rest[1] h^3 + ...
struct Node {
    static constexpr std::size_t kTerms = 13;
    /// The two parts of the value, those of the slope, whose high one has 26 bits, and the rest. What is not used makes
    /// two cache lines of a node, and its address a shift away from its index.
    std::array<double, 16> terms;

    constexpr DoubleDouble value() const { return {terms[0], terms[1]}; }
};

inline constexpr double kNodesPerUnit = 64.0;
inline constexpr std::size_t kMostTerms = 24;
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

constexpr Node makeNode(const Series& series) {
    const double slope = clearLowBits(series[1].hi);
    Node node{{series[0].hi, series[0].lo, slope, (series[1] + -slope).hi}};
    for (std::size_t i = 4; i < Node::kTerms; ++i) {
        node.terms[i] = series[i - 2].hi;
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

alignas(64) inline constexpr std::array<Node, 33> kArcSineNodes = makeNodes<33>(completeArcSine);
alignas(64) inline constexpr std::array<Node, 65> kArcTangentNodes = makeNodes<65>(completeArcTangent);

/// A sum of two parts that may overlap.
template <typename T>
struct Parts {
    T hi;
    T lo;
};

/// f(x + low) for an x above zero, with a relative error below 2^-64. `term` gives the terms of the node next to x: the
/// parts of its value, those of its slope, the rest. `h` is the way from the node to x, and `high` the upper bits of h.
template <typename T, typename Term>
inline Parts<T> evaluateSeries(const Term& term, T h, T high, T low) {
    const auto pair = [&](std::size_t i) { return term(4 + i) + term(5 + i) * h; };
    const T square = h * h;
    const T rest = (pair(0) + square * pair(2)) + square * square * (pair(4) + square * (pair(6) + square * term(12)));
    const T slopeHere = term(2) + 2.0 * h * term(4);
    const T small = (term(2) * (h - high) + term(3) * h) + slopeHere * low;
    const T linear = term(2) * high;
    const T sum = term(0) + linear;
    return {sum, (linear - (sum - term(0))) + ((term(1) + rest * square) + small)};
}

/// Added to an argument, gives a sum whose last bit has the weight of a node.
inline constexpr double kAligner = 0x1p52 / kNodesPerUnit;

template <std::size_t Count>
inline Parts<double> evaluate(const std::array<Node, Count>& nodes, double x, double low) {
    const double aligned = x + kAligner;
    const Node& node = nodes[std::bit_cast<std::uint64_t>(aligned) % 128];
    const double h = x - (aligned - kAligner);
    return evaluateSeries([&node](std::size_t i) { return node.terms[i]; }, h, clearLowBits(h), low);
}

#ifdef TALVEK_HAS_SSE2

inline DoublePair clearLowBits(DoublePair value) {
    return _mm_and_pd(value.both, _mm_castsi128_pd(_mm_set1_epi64x(~std::int64_t{kLowBits})));
}

/// The terms of two nodes side by side.
class NodePair {
  public:
    NodePair(const Node& a, const Node& b) {
        for (std::size_t i = 0; i < terms_.size(); i += 2) {
            const __m128d ofA = _mm_load_pd(&a.terms[i]);
            const __m128d ofB = _mm_load_pd(&b.terms[i]);
            terms_[i] = _mm_unpacklo_pd(ofA, ofB);
            terms_[i + 1] = _mm_unpackhi_pd(ofA, ofB);
        }
    }
    DoublePair operator()(std::size_t i) const { return terms_[i]; }

  private:
    std::array<DoublePair, Node::kTerms + 1> terms_;
};

template <std::size_t Count>
inline Parts<DoublePair> evaluate(const std::array<Node, Count>& nodes, DoublePair x, DoublePair low) {
    const DoublePair aligned = x + kAligner;
    const __m128i bits = _mm_castpd_si128(aligned.both);
    const auto first = static_cast<unsigned>(_mm_cvtsi128_si32(bits));
    const auto second = static_cast<unsigned>(_mm_cvtsi128_si32(_mm_unpackhi_epi64(bits, bits)));
    const DoublePair h = x - (aligned - kAligner);
    return evaluateSeries(NodePair(nodes[first % 128], nodes[second % 128]), h, clearLowBits(h), low);
}

#endif

}  // namespace talvek::exact
