// The quick bounds of what the angles around a vertex lack of a full turn.
#include "mesh/angle_deficit.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>
#include <numeric>
#include <vector>

#include "mesh/ring_terms.h"
#include "support/random_numbers.h"

namespace talvek::test {
namespace {

/// Vertex 0 at `origin` and `size` neighbours around it, in order, at unequal distances and heights.
std::vector<float> makeRing(RandomNumbers& random, int size, double origin, double roughness) {
    std::vector<float> positions(3, static_cast<float>(origin));
    for (int i = 0; i < size; ++i) {
        const double angle = 2 * std::numbers::pi * (i + static_cast<double>(random.coordinate(0.3F))) / size;
        const double distance = 1 + static_cast<double>(random.coordinate(0.5F));
        positions.push_back(static_cast<float>(origin + distance * std::cos(angle)));
        positions.push_back(static_cast<float>(origin + distance * std::sin(angle)));
        positions.push_back(static_cast<float>(origin + roughness * static_cast<double>(random.coordinate(1))));
    }
    return positions;
}

struct Outcome {
    AngleDeficit bounds;
    double exact;
    bool isBounded() const { return !std::isnan(bounds.low); }
};

Outcome outcomeOf(const std::vector<float>& positions) {
    std::vector<std::int32_t> ring(positions.size() / 3 - 1);
    std::iota(ring.begin(), ring.end(), 1);
    RingTerms terms;
    terms.add(positions.data(), 0, ring);
    terms.calculate();
    return {terms.sums(0, ring.size()).deficit, terms.deficit(0, ring.size())};
}

TEST(AngleDeficit, LiesBetweenItsBounds) {
    RandomNumbers random;
    int bounded = 0;
    for (int round = 0; round < 20000; ++round) {
        const double origin = round % 3 == 0 ? 0 : round % 3 == 1 ? 100 : 3000;
        const double roughness = std::pow(10.0, -(round % 7));
        const Outcome outcome = outcomeOf(makeRing(random, 3 + round % 11, origin, roughness));
        if (outcome.isBounded()) {
            ++bounded;
            ASSERT_LE(outcome.bounds.low, outcome.exact) << "round " << round;
            ASSERT_GE(outcome.bounds.high, outcome.exact) << "round " << round;
        }
    }
    EXPECT_GT(bounded, 15000);
}

TEST(AngleDeficit, HasNarrowBoundsOnAnOrdinaryRing) {
    RandomNumbers random;
    const Outcome outcome = outcomeOf(makeRing(random, 6, 10, 0.01));
    ASSERT_TRUE(outcome.isBounded());
    EXPECT_LT(outcome.bounds.high - outcome.bounds.low, 1e-12);
    EXPECT_GT(outcome.bounds.high - outcome.bounds.low, 1e-15);
}

/// Of three angles whose complex numbers make a product of 10890 + 56 `last` and 18480 - 33 `last`.
AngleDeficit deficitOfThree(double last) {
    AngleDeficitFinder angles;
    angles.add(-4, 7, 65);
    angles.add(-4, 7, 65);
    angles.add(-330, last, 65);
    return angles.find();
}

double middle(const AngleDeficit& bounds) {
    return (bounds.low + bounds.high) / 2;
}

TEST(AngleDeficit, HasItsBoundsAsFarApartAsRoundingCanBring) {
    const AngleDeficit bounds = deficitOfThree(523);
    EXPECT_NEAR(bounds.high - bounds.low, 0x1p-52 * (3 * (24.5 * 65 / 7 + 11) + 20), 1e-17);
}

TEST(AngleDeficit, LiesInTheMiddleOfItsBounds) {
    for (int last = 523; last <= 597; ++last) {
        const double tangent = (18480.0 - 33 * last) / (10890 + 56 * last);
        EXPECT_NEAR(middle(deficitOfThree(560)) - middle(deficitOfThree(last)), std::atan(tangent), 3e-17) << last;
    }
}

/// Of angles that make a full turn, the smallest of which has an area of a half.
AngleDeficit deficitOfTurn(int count, double longestSquare) {
    AngleDeficitFinder angles;
    for (int i = 0; i < count; ++i) {
        const double angle = 2 * std::numbers::pi / count;
        angles.add(0.5 / std::tan(angle), 0.5, longestSquare);
    }
    return angles.find();
}

TEST(AngleDeficit, IsBoundedUpToTwelveAnglesAndARatioOf1024) {
    EXPECT_FALSE(std::isnan(deficitOfTurn(12, 511).low));
    EXPECT_TRUE(std::isnan(deficitOfTurn(12, 512).low));
    EXPECT_TRUE(std::isnan(deficitOfTurn(13, 511).low));
}

TEST(AngleDeficit, IsNotBoundedWhereTheAnglesAreFarFromAFullTurn) {
    // Three steep sides of a needle; then twice around.
    EXPECT_FALSE(outcomeOf({0, 0, 9, 1, 0, 0, -0.5F, 0.8F, 0, -0.5F, -0.8F, 0}).isBounded());
    std::vector<float> twice(3, 0.0F);
    for (int i = 0; i < 10; ++i) {
        const double angle = 4 * std::numbers::pi * i / 10;
        twice.insert(twice.end(), {static_cast<float>(std::cos(angle)), static_cast<float>(std::sin(angle)), 0});
    }
    const Outcome outcome = outcomeOf(twice);
    EXPECT_NEAR(outcome.exact, -2 * std::numbers::pi, 1e-5);
    EXPECT_FALSE(outcome.isBounded());
}

TEST(AngleDeficit, IsNotBoundedWhereTrianglesHaveNoExtent) {
    EXPECT_FALSE(outcomeOf({0, 0, 0, 1, 0, 0, 2, 0, 0, -1, 1, 0, -1, -1, 0}).isBounded());
    EXPECT_FALSE(outcomeOf({0, 0, 0, 0, 0, 0, 2, 0, 0, -1, 1, 0, -1, -1, 0}).isBounded());
    EXPECT_FALSE(outcomeOf({0, 0, 0, 1e-5F, 0, 0, 0, 1e-5F, 0, -1e-5F, -1e-5F, 0}).isBounded());
}

TEST(AngleDeficit, IsNotBoundedWhereSomethingIsNotFinite) {
    RandomNumbers random;
    const std::vector<float> ring = makeRing(random, 6, 0, 0.1);
    for (std::size_t i = 0; i < ring.size(); ++i) {
        for (const float value : {std::numeric_limits<float>::infinity(), -std::numeric_limits<float>::infinity(),
                                  std::numeric_limits<float>::quiet_NaN()}) {
            std::vector<float> broken = ring;
            broken[i] = value;
            EXPECT_FALSE(outcomeOf(broken).isBounded()) << i;
        }
    }
}

TEST(AngleDeficit, IsNotBoundedForManyAngles) {
    RandomNumbers random;
    EXPECT_FALSE(outcomeOf(makeRing(random, 40, 0, 0.01)).isBounded());
}

}  // namespace
}  // namespace talvek::test
