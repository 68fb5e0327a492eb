// Colours, the mineral classes they stand for, and the factors of these.
#include "weathering/mineral_classes.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace talvek::test {
namespace {

struct Expectation {
    int mineralClass;
    float red, green, blue;
    float factor;
};

constexpr Expectation kTable[] = {
    {1, 255, 255, 0, 0.96F},   {2, 221, 160, 221, 0.94F}, {3, 255, 105, 180, 0.91F},  {4, 128, 0, 0, 0.89F},
    {5, 0, 192, 0, 0.77F},     {6, 0, 255, 0, 0.78F},     {7, 51, 102, 0, 0.84F},     {8, 192, 64, 0, 0.9F},
    {9, 128, 128, 0, 0.96F},   {10, 192, 192, 255, 1},    {11, 128, 128, 255, 0.76F}, {12, 255, 192, 128, 0.8F},
    {13, 255, 128, 0, 0.84F},  {14, 178, 34, 34, 0.89F},  {15, 255, 215, 0, 0.91F},   {16, 255, 0, 0, 0.94F},
    {17, 186, 85, 211, 0.96F}, {18, 0, 0, 192, 1},        {19, 128, 128, 128, 0},     {20, 255, 255, 255, 1},
};

TEST(MineralClasses, AreToldByTheirColours) {
    for (const Expectation& e : kTable) {
        EXPECT_EQ(mineralClassOf(e.blue, e.green, e.red), e.mineralClass);
        EXPECT_EQ(mineralFactor(e.mineralClass), e.factor) << e.mineralClass;
        EXPECT_EQ(mineralDelta(e.blue, e.green, e.red, 0.3F), 0.3F * e.factor) << e.mineralClass;
    }
}

TEST(MineralClasses, AreTwentyColoursAmongAll) {
    int recognised = 0;
    int sum = 0;
    for (int blue = 0; blue < 256; ++blue) {
        for (int green = 0; green < 256; green += 1) {
            // All reds that occur, and some that do not.
            for (const int red : {0, 1, 51, 127, 128, 178, 186, 192, 221, 254, 255}) {
                const int found =
                    mineralClassOf(static_cast<float>(blue), static_cast<float>(green), static_cast<float>(red));
                recognised += found > 0 ? 1 : 0;
                sum += found;
            }
        }
    }
    EXPECT_EQ(recognised, 20);
    EXPECT_EQ(sum, 210);
}

TEST(MineralClasses, TellRedFromBlue) {
    EXPECT_EQ(mineralClassOf(0, 0, 255), 16);
    EXPECT_EQ(mineralDelta(0, 0, 255, 1), 0.94F);
    EXPECT_EQ(mineralClassOf(255, 0, 0), 0);
    EXPECT_EQ(mineralDelta(255, 0, 0, 1), 0);
}

TEST(MineralDelta, IsZeroWhereNothingWeathers) {
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    for (const float delta : {-1.0F, kInfinity, std::nanf("")}) {
        EXPECT_EQ(mineralDelta(128, 128, 128, delta), 0);
        EXPECT_EQ(mineralDelta(1, 2, 3, delta), 0);
        EXPECT_FALSE(std::signbit(mineralDelta(1, 2, 3, delta)));
    }
    EXPECT_EQ(mineralDelta(255, 255, 255, kInfinity), kInfinity);
}

}  // namespace
}  // namespace talvek::test
