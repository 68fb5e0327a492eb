// Two doubles at once give for each what one alone gives, to the last bit.
#include "math/double_pair.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cstdint>
#include <limits>
#include <vector>

#include "support/random_numbers.h"

namespace talvek::test {
namespace {

constexpr std::size_t kLanes = kDoubleLanes;
using Lanes = std::array<double, kLanes>;

DoubleLanes loaded(const Lanes& values) {
    DoubleLanes lanes{};
    load(values.data(), lanes);
    return lanes;
}

Lanes stored(DoubleLanes lanes) {
    Lanes values{};
    store(values.data(), lanes);
    return values;
}

/// Ordinary numbers and those at the edges. No not-a-numbers: what becomes of those is nobody's business here.
std::vector<double> manyNumbers() {
    constexpr double kMost = std::numeric_limits<double>::max();
    constexpr double kLeast = std::numeric_limits<double>::denorm_min();
    std::vector<double> numbers = {0.0, -0.0, 1.0, -1.0, 1e-7, 0.25, 2.0, kMost, -kMost, kLeast, -kLeast};
    RandomNumbers random;
    for (int i = 0; i < 60; ++i) {
        numbers.push_back(static_cast<double>(random.coordinate(1000)));
    }
    return numbers;
}

/// Calls `compare(lanes of a, lanes of b, a, b)` for many pairs of lanes.
template <typename Compare>
void forManyLanes(Compare compare) {
    const std::vector<double> numbers = manyNumbers();
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        for (std::size_t k = 0; k < numbers.size(); ++k) {
            Lanes a{};
            Lanes b{};
            for (std::size_t lane = 0; lane < kLanes; ++lane) {
                a[lane] = numbers[(i + 7 * lane) % numbers.size()];
                b[lane] = numbers[(k + 3 * lane) % numbers.size()];
            }
            compare(loaded(a), loaded(b), a, b);
        }
    }
}

void expectSame(DoubleLanes lanes, const Lanes& expected) {
    const Lanes values = stored(lanes);
    for (std::size_t lane = 0; lane < kLanes; ++lane) {
        ASSERT_EQ(std::bit_cast<std::uint64_t>(values[lane]), std::bit_cast<std::uint64_t>(expected[lane]));
    }
}

/// Of each lane alone.
template <typename Calculate>
Lanes ofEach(Calculate calculate) {
    Lanes results{};
    for (std::size_t lane = 0; lane < kLanes; ++lane) {
        results[lane] = calculate(lane);
    }
    return results;
}

TEST(DoublePair, CalculatesAsOneDoubleDoes) {
    forManyLanes([](DoubleLanes a, DoubleLanes b, const Lanes& x, const Lanes& y) {
        expectSame(a + b, ofEach([&](std::size_t lane) { return x[lane] + y[lane]; }));
        expectSame(a - b, ofEach([&](std::size_t lane) { return x[lane] - y[lane]; }));
        expectSame(a * b, ofEach([&](std::size_t lane) { return x[lane] * y[lane]; }));
    });
}

TEST(DoublePair, DividesAndTakesRootsAsOneDoubleDoes) {
    forManyLanes([](DoubleLanes a, DoubleLanes b, const Lanes& x, const Lanes& y) {
        const Lanes divisors = ofEach([&](std::size_t lane) { return y[lane] != 0.0 ? y[lane] : 3.0; });
        expectSame(a / loaded(divisors), ofEach([&](std::size_t lane) { return x[lane] / divisors[lane]; }));
        expectSame(squareRoot(b * b), ofEach([&](std::size_t lane) { return squareRoot(y[lane] * y[lane]); }));
    });
}

TEST(DoublePair, TakesTheLargerAsOneDoubleDoes) {
    forManyLanes([](DoubleLanes a, DoubleLanes b, const Lanes& x, const Lanes& y) {
        expectSame(larger(a, b), ofEach([&](std::size_t lane) { return larger(x[lane], y[lane]); }));
        expectSame(atLeast(a, 1e-7), ofEach([&](std::size_t lane) { return atLeast(x[lane], 1e-7); }));
    });
}

TEST(DoublePair, IsEqualWhereAllLanesAre) {
    forManyLanes([](DoubleLanes a, DoubleLanes b, const Lanes& x, const Lanes& y) {
        bool isEqual = true;
        for (std::size_t lane = 0; lane < kLanes; ++lane) {
            isEqual = isEqual && areEqual(x[lane], y[lane]);
        }
        ASSERT_EQ(areEqual(a, b), isEqual);
    });
}

TEST(DoublePair, OneDoubleIsLoadedAndStoredAsItIs) {
    const double from = -2.5;
    double value = 0;
    load(&from, value);
    EXPECT_EQ(value, -2.5);
    double to = 0;
    store(&to, value);
    EXPECT_EQ(to, -2.5);
}

}  // namespace
}  // namespace talvek::test
