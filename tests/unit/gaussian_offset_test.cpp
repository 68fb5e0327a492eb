// Normally distributed offsets.
#include "weathering/gaussian_offset.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "math/exact_math.h"
#include "weathering/random.h"

namespace talvek::test {
namespace {

/// The formula once more, step by step, on a generator of its own.
double expectedOffset(RandomGenerator& generator, double mean, double sigma) {
    for (;;) {
        const auto u = static_cast<float>(generator.next() / 32767.0 * 2.0 - 1.0);
        const auto v = static_cast<float>(generator.next() / 32767.0 * 2.0 - 1.0);
        const float s = u * u + v * v;
        if (s < 1.0F) {
            float z = exact::logarithmf(s) * -2.0F;
            z = z / s;
            z = std::sqrt(z);
            z = z * u;
            z = z / 3.0F;
            return static_cast<double>(z) * sigma + mean;
        }
    }
}

TEST(GaussianOffset, FollowsItsFormulaFromThePresentStateOfTheGenerator) {
    randomGenerator() = RandomGenerator();
    RandomGenerator generator;
    for (int i = 0; i < 100000; ++i) {
        ASSERT_EQ(gaussianOffset(0.25, 1.5), expectedOffset(generator, 0.25, 1.5)) << i;
    }
}

TEST(GaussianOffset, HasAThirdOfSigmaAsItsStandardDeviation) {
    randomGenerator() = RandomGenerator();
    constexpr int kDraws = 200000;
    double sum = 0;
    double squares = 0;
    int beyondSigma = 0;
    for (int i = 0; i < kDraws; ++i) {
        const double offset = gaussianOffset(0, 3);
        sum += offset;
        squares += offset * offset;
        beyondSigma += std::fabs(offset) > 3 ? 1 : 0;
    }
    EXPECT_NEAR(sum / kDraws, 0, 0.01);
    EXPECT_NEAR(std::sqrt(squares / kDraws), 1, 0.01);
    // Three standard deviations.
    EXPECT_NEAR(beyondSigma / static_cast<double>(kDraws), 0.0027, 0.0007);
}

TEST(GaussianOffset, IsTheMeanWhenSigmaIsZero) {
    for (int i = 0; i < 1000; ++i) {
        ASSERT_EQ(gaussianOffset(-1.25, 0), -1.25);
    }
}

TEST(GaussianOffset, IsNotANumberInTheMiddleOfTheCircle) {
    EXPECT_TRUE(std::isnan(normalThird(0, 0)));
}

TEST(GaussianOffset, IsZeroOnTheRimOfTheCircle) {
    EXPECT_EQ(normalThird(1, 1), 0);
}

}  // namespace
}  // namespace talvek::test
