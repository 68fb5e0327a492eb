// Colours for numbers: equal steps look equal, and the colour-blind can tell them apart.
#include "talvek/results/palette.h"

#include <gtest/gtest.h>

#include <cmath>

#include "talvek/results/change_scale.h"

namespace talvek::test {
namespace {

using Triple = std::array<double, 3>;

Triple lightsOf(const host::Colour& colour) {
    return {static_cast<double>(host::lightOf(colour.red)), static_cast<double>(host::lightOf(colour.green)),
            static_cast<double>(host::lightOf(colour.blue))};
}

Triple product(const double (&matrix)[3][3], const Triple& v) {
    Triple result{};
    for (std::size_t i = 0; i < 3; ++i) {
        result[i] = matrix[i][0] * v[0] + matrix[i][1] * v[1] + matrix[i][2] * v[2];
    }
    return result;
}

/// CIELAB (D65), another measure than the one the palettes were made with.
Triple labOf(const Triple& lights) {
    const double toXyz[3][3] = {{0.4124564 / 0.95047, 0.3575761 / 0.95047, 0.1804375 / 0.95047},
                                {0.2126729, 0.7151522, 0.0721750},
                                {0.0193339 / 1.08883, 0.1191920 / 1.08883, 0.9503041 / 1.08883}};
    Triple f = product(toXyz, lights);
    for (double& value : f) {
        value = value > 0.008856 ? std::cbrt(value) : 7.787 * value + 16.0 / 116;
    }
    return {116 * f[1] - 16, 500 * (f[0] - f[1]), 200 * (f[1] - f[2])};
}

double distance(const Triple& a, const Triple& b) {
    return std::hypot(a[0] - b[0], a[1] - b[1], a[2] - b[2]);
}

/// G. M. Machado, M. M. Oliveira and L. A. F. Fernandes, "A physiologically-based model for simulation of color vision
/// deficiency", 2009: protanopia, deuteranopia and tritanopia.
constexpr double kDeficiencies[3][3][3] = {
    {{0.152286, 1.052583, -0.204868}, {0.114503, 0.786281, 0.099216}, {-0.003882, -0.048116, 1.051998}},
    {{0.367322, 0.860646, -0.227968}, {0.280085, 0.672501, 0.047413}, {-0.011820, 0.042940, 0.968881}},
    {{1.255528, -0.076749, -0.178779}, {-0.078411, 0.930809, 0.147602}, {0.004733, 0.691367, 0.303900}}};

Triple seenBy(const double (&deficiency)[3][3], const host::Colour& colour) {
    Triple lights = product(deficiency, lightsOf(colour));
    for (double& light : lights) {
        light = std::clamp(light, 0.0, 1.0);
    }
    return labOf(lights);
}

constexpr int kSteps = 24;

double placeOf(int step) {
    return static_cast<double>(step) / kSteps;
}

TEST(Palettes, LightnessFallsEvenlyFromNothingToMuch) {
    for (const host::PalettePair& pair : host::palettes()) {
        const double whole = labOf(lightsOf(pair.sequential.at(0)))[0] - labOf(lightsOf(pair.sequential.at(1)))[0];
        EXPECT_GT(whole, 55) << pair.name;
        for (int step = 0; step < kSteps; ++step) {
            const double drop = labOf(lightsOf(pair.sequential.at(placeOf(step))))[0] -
                                labOf(lightsOf(pair.sequential.at(placeOf(step + 1))))[0];
            EXPECT_GT(drop, 0.55 * whole / kSteps) << pair.name << " " << step;
            EXPECT_LT(drop, 1.6 * whole / kSteps) << pair.name << " " << step;
        }
    }
}

TEST(Palettes, TheColourBlindSeeLessAndMore) {
    for (const host::PalettePair& pair : host::palettes()) {
        for (const auto& deficiency : kDeficiencies) {
            for (int step = 0; step < kSteps; ++step) {
                EXPECT_GT(seenBy(deficiency, pair.sequential.at(placeOf(step)))[0],
                          seenBy(deficiency, pair.sequential.at(placeOf(step + 1)))[0])
                    << pair.name << " " << step;
            }
        }
    }
}

TEST(Palettes, TheColourBlindTellLossFromGrowth) {
    for (const host::PalettePair& pair : host::palettes()) {
        for (const auto& deficiency : kDeficiencies) {
            for (int step = 0; step < kSteps / 3; ++step) {
                EXPECT_GT(distance(seenBy(deficiency, pair.diverging.at(placeOf(step))),
                                   seenBy(deficiency, pair.diverging.at(placeOf(kSteps - step)))),
                          25)
                    << pair.name << " " << step;
            }
        }
    }
}

TEST(Palettes, BothSidesOfNothingAreEquallyLight) {
    for (const host::PalettePair& pair : host::palettes()) {
        for (int step = 0; step < kSteps / 2; ++step) {
            EXPECT_NEAR(labOf(lightsOf(pair.diverging.at(placeOf(step))))[0],
                        labOf(lightsOf(pair.diverging.at(placeOf(kSteps - step))))[0], 5)
                << pair.name << " " << step;
        }
    }
}

TEST(ChangeScale, LossIsShownByItsAmountFromNothingToARoundNumber) {
    const std::vector<double> change = {-1.47, -0.2, 0};
    const host::ChangeScale scale(change, host::palettes()[0], std::nullopt);
    EXPECT_EQ(scale.title(), "recession, mm");
    EXPECT_EQ(scale.range().from, 0);
    EXPECT_NEAR(scale.range().to, 1.5, 1e-12);
    EXPECT_NEAR(scale.place(-0.75), 0.5, 1e-12);
    EXPECT_EQ(scale.tickText(0.5), "0.5");
    EXPECT_EQ(scale.tickText(0.0), "0.0");
}

TEST(ChangeScale, BothDirectionsLieRoundNothing) {
    const std::vector<double> change = {-0.3, 0.1};
    const host::ChangeScale scale(change, host::palettes()[0], std::nullopt);
    EXPECT_EQ(scale.title(), "change, mm");
    EXPECT_NEAR(scale.place(0), 0.5, 1e-12);
    EXPECT_EQ(scale.tickText(0.2), "+0.2");
    EXPECT_EQ(scale.tickText(-0.2), "−0.2");
}

TEST(ChangeScale, SmallGrowthIsToldInMicrometres) {
    const std::vector<double> change = {0.0228, 0.0226, -0.0001};
    const host::ChangeScale scale(change, host::palettes()[0], std::nullopt);
    EXPECT_EQ(scale.title(), "growth, µm");
    EXPECT_EQ(scale.tickText(0.02), "20");
}

}  // namespace
}  // namespace talvek::test
