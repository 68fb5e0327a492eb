// The thickness by which the surface moves, against values computed from the formulas with sixty digits.
#include "weathering/rates.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace talvek::test {
namespace {

constexpr MaterialRecord kSandstone = {{0.14F, 0.11F, 544.3F, 312, 375, 2452, 100.9F, 2.714F}};
constexpr MaterialRecord kMarble = {{0.5, 0.25, 100, 50, 20, 1000, 172.2, 2.7}};
constexpr EpochRecord kCityYear = {{365, 4.09e-13, 1.023e-12, 1.13, 4.5}};

struct KnownDelta {
    MaterialRecord material;
    EpochRecord epoch;
    /// Under models 1, 2 and 3.
    double delta[3];
};

constexpr KnownDelta kKnown[] = {
    {kSandstone,
     {{365, 4.09e-13, 1.023e-12, 1.13, 4.5}},
     {0.00025939935419008480678, 0.0020474898749308853915, -0.016991317533751557679}},
    {kSandstone,
     {{1, 1e-09, 2e-09, 0.5, 3}},
     {0.0015903874390102828344, 0.0075598165014637094626, -0.053917120992952240508}},
    {kSandstone, {{3650, 2.5e-07, 1e-08, 2, 7}}, {4.7675981067510116322, 5.348963750227200893, -15201.891847658407364}},
    {kSandstone,
     {{1000000, 1e-13, 1e-13, 10, 0.5}},
     {0.04342009341916968272, 0.087913286011874472201, -237398.23779420603841}},
    {kSandstone,
     {{30.5, 0.001, 0.25, 0.001, 14}},
     {27.597145273566459103, 114.79212594435395538, -6993988.3630605822616}},
    {kMarble,
     {{365, 4.09e-13, 1.023e-12, 1.13, 4.5}},
     {0.000076149195444554928844, 0.00025245468143310379584, -0.014408085505792828658}},
    {kMarble,
     {{1, 1e-09, 2e-09, 0.5, 3}},
     {0.00050935740566653105647, 0.0015730581345170877947, -0.037735927768082172217}},
    {kMarble, {{3650, 2.5e-07, 1e-08, 2, 7}}, {11.669299189602288285, 10.443315188312550777, -10635.718491993229114}},
    {kMarble,
     {{1000000, 1e-13, 1e-13, 10, 0.5}},
     {0.044439365013020614714, 0.093561200903185261026, -237396.92347291961819}},
    {kMarble, {{30.5, 0.001, 0.25, 0.001, 14}}, {68.176830991443857649, 226.54338543638942012, -4893194.6347240357382}},
};

void expectKnown(std::int32_t model) {
    for (const KnownDelta& known : kKnown) {
        const double expected = known.delta[model - 1];
        // What is left of the precision where the root and the resistance nearly cancel.
        EXPECT_NEAR(weatheringDelta(known.material, known.epoch, model), expected, std::fabs(expected) * 1e-11);
    }
}

EpochRecord with(std::size_t slot, double value) {
    EpochRecord epoch = kCityYear;
    epoch.values[slot] = value;
    return epoch;
}

MaterialRecord stoneWith(std::size_t slot, double value) {
    MaterialRecord material = kSandstone;
    material.values[slot] = value;
    return material;
}

bool isPlusZero(double value) {
    return value == 0 && !std::signbit(value);
}

bool isMinusZero(double value) {
    return value == 0 && std::signbit(value);
}

constexpr std::size_t kDays = 0;
constexpr std::size_t kSo2 = 1;
constexpr std::size_t kNo2 = 2;
constexpr std::size_t kRv = 3;
constexpr std::size_t kRph = 4;
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

TEST(Rates, So2CrustHasItsKnownThickness) {
    expectKnown(1);
}

TEST(Rates, So2No2CrustHasItsKnownThickness) {
    expectKnown(2);
}

TEST(Rates, AcidRainHasItsKnownRecession) {
    expectKnown(3);
}

TEST(Rates, AnyOtherModelMovesNothing) {
    for (const std::int32_t model : {0, 4, -1, 100, std::numeric_limits<std::int32_t>::min()}) {
        EXPECT_TRUE(isPlusZero(weatheringDelta(kSandstone, kCityYear, model))) << model;
        EXPECT_TRUE(isPlusZero(weatheringDelta(kSandstone, with(kDays, kNan), model))) << model;
    }
}

TEST(Rates, NoSo2GrowsNoCrust) {
    EXPECT_TRUE(isPlusZero(weatheringDelta(kSandstone, with(kSo2, 0), 1)));
    EXPECT_TRUE(isPlusZero(weatheringDelta(kSandstone, with(kSo2, 0), 2)));
    EXPECT_TRUE(isPlusZero(weatheringDelta(kSandstone, with(kNo2, 0), 2)));
}

TEST(Rates, NoDaysChangeNothing) {
    EXPECT_TRUE(isPlusZero(weatheringDelta(kSandstone, with(kDays, 0), 1)));
    EXPECT_TRUE(isPlusZero(weatheringDelta(kSandstone, with(kDays, 0), 2)));
    EXPECT_TRUE(isMinusZero(weatheringDelta(kSandstone, with(kDays, 0), 3)));
}

TEST(Rates, NeitherGasNorRainRecedesByMinusZero) {
    EpochRecord epoch = kCityYear;
    epoch.values = {365, 0, 0, 0, 4.5};
    EXPECT_TRUE(isMinusZero(weatheringDelta(kSandstone, epoch, 3)));
}

TEST(Rates, RainOfAcidityThreeHasAFactorOfOne) {
    EpochRecord epoch = kCityYear;
    epoch.values = {730, 0, 0, 1.5, 3};
    const double factor = static_cast<double>(27.38F) + static_cast<double>(6.56F);
    EXPECT_EQ(weatheringDelta(kSandstone, epoch, 3), factor * 1.5 * 2 / -1000);
}

TEST(Rates, TheSo2CrustKnowsNeitherNo2NorRain) {
    const double delta = weatheringDelta(kSandstone, kCityYear, 1);
    EXPECT_EQ(weatheringDelta(kSandstone, with(kNo2, 5), 1), delta);
    EXPECT_EQ(weatheringDelta(kSandstone, with(kRv, 5), 1), delta);
    EXPECT_EQ(weatheringDelta(kSandstone, with(kRph, 5), 1), delta);
}

TEST(Rates, OnlyTheSo2CrustHasTwoResistances) {
    const double delta = weatheringDelta(kSandstone, kCityYear, 2);
    EXPECT_EQ(weatheringDelta(stoneWith(2, 1), kCityYear, 2), delta);
    EXPECT_EQ(weatheringDelta(stoneWith(3, 1), kCityYear, 2), delta);
    EXPECT_NE(weatheringDelta(stoneWith(4, 1), kCityYear, 2), delta);
    EXPECT_NE(weatheringDelta(stoneWith(2, 1), kCityYear, 1), weatheringDelta(kSandstone, kCityYear, 1));
}

TEST(Rates, ANegativeGasGrowsNoCrust) {
    EXPECT_TRUE(isPlusZero(weatheringDelta(kSandstone, with(kSo2, -1), 1)));
    EXPECT_TRUE(isPlusZero(weatheringDelta(kSandstone, with(kSo2, -1e-13), 2)));
    EXPECT_TRUE(isPlusZero(weatheringDelta(kSandstone, with(kNo2, -1e-13), 2)));
}

TEST(Rates, ACrustEndsOnlyBelowADiscriminantOfZero) {
    // De and Den make a = 1, the resistances b = 1, and one day of -1 s = -0.25.
    const MaterialRecord stone = {{0.5, 0.5, 2, 2, 1, 1, 1, 96}};
    const EpochRecord day = {{1, -1, 0, 0, 0}};
    EXPECT_EQ(weatheringDelta(stone, day, 1), -5);
    EpochRecord more = day;
    more.values[kSo2] = -1.0000001;
    EXPECT_TRUE(isPlusZero(weatheringDelta(stone, more, 1)));
}

TEST(Rates, ANegativeGasRecedesByNotANumber) {
    EXPECT_TRUE(std::isnan(weatheringDelta(kSandstone, with(kSo2, -1e-13), 3)));
}

TEST(Rates, NotANumberGrowsNoCrust) {
    for (std::size_t slot : {kDays, kSo2}) {
        EXPECT_TRUE(isPlusZero(weatheringDelta(kSandstone, with(slot, kNan), 1)));
        EXPECT_TRUE(isPlusZero(weatheringDelta(kSandstone, with(slot, kNan), 2)));
        EXPECT_TRUE(std::isnan(weatheringDelta(kSandstone, with(slot, kNan), 3)));
    }
}

TEST(Rates, DivisorsOfZeroGiveWhatTheArithmeticGives) {
    EXPECT_TRUE(std::isnan(weatheringDelta(stoneWith(0, 0), kCityYear, 1)));
    EXPECT_TRUE(std::isnan(weatheringDelta(stoneWith(1, 0), kCityYear, 2)));
    EXPECT_TRUE(std::isnan(weatheringDelta(stoneWith(2, 0), kCityYear, 1)));
    EXPECT_TRUE(std::isnan(weatheringDelta(stoneWith(4, 0), kCityYear, 2)));
    EXPECT_EQ(weatheringDelta(stoneWith(7, 0), kCityYear, 1), std::numeric_limits<double>::infinity());
    EXPECT_EQ(weatheringDelta(stoneWith(7, 0), kCityYear, 2), std::numeric_limits<double>::infinity());
    EXPECT_EQ(weatheringDelta(stoneWith(7, 0), kCityYear, 3), -std::numeric_limits<double>::infinity());
}

TEST(Rates, CrustsGrowAndRainTakesAway) {
    for (double days = 1; days < 1000000; days *= 7) {
        EXPECT_GT(weatheringDelta(kMarble, with(kDays, days), 1), 0);
        EXPECT_GT(weatheringDelta(kMarble, with(kDays, days), 2), 0);
        EXPECT_LT(weatheringDelta(kMarble, with(kDays, days), 3), 0);
    }
}

TEST(Rates, AcidRainIsProportionalToTime) {
    const double year = weatheringDelta(kSandstone, kCityYear, 3);
    EXPECT_DOUBLE_EQ(weatheringDelta(kSandstone, with(kDays, 3650), 3), 10 * year);
}

}  // namespace
}  // namespace talvek::test
