// Numbers that are formatted many at a time have the text that each has alone.
#include "base/number_group.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <limits>
#include <string>

#include "base/number_text.h"
#include "support/random_numbers.h"

namespace talvek::test {
namespace {

constexpr std::uint32_t kSign = 0x80000000;

template <typename Number>
using Numbers = std::array<Number, NumberGroup::kSize>;

std::string textOf(const Numbers<float>& coordinates) {
    char text[NumberGroup::kSize * kNumberTextSize];
    char* out = text;
    for (const float value : coordinates) {
        out = formatFixed6(out, value);
        *out++ = ' ';
    }
    return {text, out};
}

std::string textOf(const Numbers<std::int32_t>& indices) {
    char text[NumberGroup::kSize * kNumberTextSize];
    char* out = text;
    for (const std::int32_t value : indices) {
        out = formatInteger(out, std::int64_t{value} + 1);
        *out++ = ' ';
    }
    return {text, out};
}

template <auto put>
std::string textOf(const NumberGroup& group) {
    char text[NumberGroup::kSize * kNumberTextSize];
    char* out = text;
    for (std::size_t i = 0; i < NumberGroup::kSize; ++i) {
        out = put(out, group, i);
    }
    return {text, out};
}

void expectText(const Numbers<float>& coordinates) {
    NumberGroup group;
    NumberGroup portable;
    ASSERT_TRUE(takeApart(coordinates.data(), group));
    ASSERT_TRUE(takeApartPortable(coordinates.data(), portable));
    const std::string expected = textOf(coordinates);
    ASSERT_EQ(textOf<putCoordinate>(group), expected);
    ASSERT_EQ(textOf<putCoordinate>(portable), expected);
}

void expectText(const Numbers<std::int32_t>& indices) {
    NumberGroup group;
    NumberGroup portable;
    ASSERT_TRUE(takeApart(indices.data(), group));
    ASSERT_TRUE(takeApartPortable(indices.data(), portable));
    const std::string expected = textOf(indices);
    ASSERT_EQ(textOf<putIndex>(group), expected);
    ASSERT_EQ(textOf<putIndex>(portable), expected);
}

/// Numbers that are taken apart are not, wherever this one stands among them.
template <typename Number>
void expectRefused(Number refused, Number accepted) {
    for (std::size_t i = 0; i < NumberGroup::kSize; ++i) {
        Numbers<Number> numbers;
        numbers.fill(accepted);
        NumberGroup group;
        ASSERT_TRUE(takeApart(numbers.data(), group));
        ASSERT_TRUE(takeApartPortable(numbers.data(), group));
        numbers[i] = refused;
        EXPECT_FALSE(takeApart(numbers.data(), group)) << refused << " at " << i;
        EXPECT_FALSE(takeApartPortable(numbers.data(), group)) << refused << " at " << i;
    }
}

TEST(NumberGroup, Every997thCoordinateHasTheTextItHasAlone) {
    const auto end = std::bit_cast<std::uint32_t>(4096.0F);
    Numbers<float> coordinates;
    for (std::uint32_t bits = 0; bits < end;) {
        for (float& value : coordinates) {
            value = std::bit_cast<float>(std::min(bits, end - 1) | (bits % 2 == 0 ? kSign : 0));
            bits += 997;
        }
        ASSERT_NO_FATAL_FAILURE(expectText(coordinates));
    }
}

TEST(NumberGroup, EveryIndexHasTheTextItHasAlone) {
    constexpr std::int32_t kFirst = 999;
    constexpr std::int32_t kEnd = 4095999;
    Numbers<std::int32_t> indices{};
    for (std::int32_t index = kFirst; index < kEnd; index += static_cast<std::int32_t>(indices.size())) {
        for (std::size_t i = 0; i < indices.size(); ++i) {
            indices[i] = std::min(index + static_cast<std::int32_t>(i), kEnd - 1);
        }
        ASSERT_NO_FATAL_FAILURE(expectText(indices));
    }
}

TEST(NumberGroup, CoordinatesOfEverySizeStandTogether) {
    RandomNumbers numbers;
    for (int i = 0; i < 20000; ++i) {
        Numbers<float> coordinates;
        for (float& value : coordinates) {
            value = std::clamp(std::ldexp(numbers.coordinate(1), static_cast<int>(numbers.below(36)) - 24), -4095.0F,
                               4095.0F);
        }
        ASSERT_NO_FATAL_FAILURE(expectText(coordinates));
    }
}

TEST(NumberGroup, TiesAreRoundedToTheEvenDigit) {
    for (int i = 1; i < 100001; i += 48) {
        Numbers<float> ties;
        for (std::size_t k = 0; k < ties.size(); ++k) {
            ties[k] = static_cast<float>(i + 2 * static_cast<int>(k)) / (k % 2 == 0 ? 128 : -128);
        }
        ASSERT_NO_FATAL_FAILURE(expectText(ties));
    }
}

TEST(NumberGroup, NegativeZerosKeepTheirSign) {
    const Numbers<float> coordinates = {0.0F,  -0.0F, 4.0e-7F, -4.0e-7F, -1.0e-45F, 1.0e-45F,
                                        -0.0F, 0.0F,  -1,      1,        -10,       10};
    expectText(coordinates);
    EXPECT_EQ(textOf(coordinates).substr(0, 28), "0.000000 -0.000000 0.000000 ");
}

TEST(NumberGroup, ACoordinateWhoseDecimalsBecomeAWholeIsRightOrRefused) {
    for (const float value : {std::nextafter(1.0F, 0.0F), -std::nextafter(1.0F, 0.0F), std::nextafter(2.0F, 0.0F),
                              std::nextafter(4.0F, 0.0F), std::nextafter(8.0F, 0.0F), -std::nextafter(8.0F, 0.0F)}) {
        for (std::size_t i = 0; i < NumberGroup::kSize; ++i) {
            Numbers<float> coordinates{};
            coordinates[i] = value;
            NumberGroup group;
            if (takeApart(coordinates.data(), group)) {
                EXPECT_EQ(textOf<putCoordinate>(group), textOf(coordinates));
            }
            ASSERT_TRUE(takeApartPortable(coordinates.data(), group));
            EXPECT_EQ(textOf<putCoordinate>(group), textOf(coordinates));
        }
    }
}

TEST(NumberGroup, LargeCoordinatesAreRefused) {
    const float infinity = std::numeric_limits<float>::infinity();
    const float notANumber = std::numeric_limits<float>::quiet_NaN();
    for (const float value : {4096.0F, 4097.5F, 2147483648.0F, 4294967296.0F, 3.4028235e38F, infinity, notANumber}) {
        expectRefused(value, std::nextafter(4096.0F, 0.0F));
        expectRefused(-value, -1.0F);
    }
}

TEST(NumberGroup, ShortAndLongIndicesAreRefused) {
    constexpr std::int32_t kLeast = std::numeric_limits<std::int32_t>::min();
    constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();
    for (const std::int32_t index : {0, 998, -1, -2, -1000, kLeast, kLeast + 1, kMost, kMost - 1, 4095999, 16777216}) {
        expectRefused(index, 999);
        expectRefused(index, 4095998);
    }
}

}  // namespace
}  // namespace talvek::test
