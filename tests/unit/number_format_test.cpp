// Numbers become the text that printf gives, in every locale.
#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cmath>
#include <cstdio>
#include <limits>
#include <string>

#include "base/number_text.h"
#include "support/comma_locale.h"
#include "support/random_numbers.h"

namespace talvek::test {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

std::string fixed(double value, int decimals) {
    char text[kNumberTextSize];
    return {text, formatFixed(text, value, decimals)};
}

std::string fixed6(float value) {
    char text[kNumberTextSize];
    return {text, formatFixed6(text, value)};
}

std::string general(double value) {
    char text[kNumberTextSize];
    return {text, formatGeneral(text, value)};
}

std::string integer(std::int64_t value) {
    char text[kNumberTextSize];
    return {text, formatInteger(text, value)};
}

std::string printfFixed(double value, int decimals) {
    char text[kNumberTextSize];
    return {text, static_cast<std::size_t>(std::snprintf(text, sizeof text, "%.*f", decimals, value))};
}

std::string printfGeneral(double value) {
    char text[kNumberTextSize];
    return {text, static_cast<std::size_t>(std::snprintf(text, sizeof text, "%g", value))};
}

TEST(NumberFormat, FixedIsWhatPrintfGivesForAnyDouble) {
    RandomNumbers numbers;
    for (int i = 0; i < 20000; ++i) {
        const double value = numbers.anyDouble();
        if (std::isfinite(value)) {
            ASSERT_EQ(fixed(value, i % 10), printfFixed(value, i % 10));
        }
    }
}

TEST(NumberFormat, FixedIsWhatPrintfGivesForMeasures) {
    RandomNumbers numbers;
    for (int i = 0; i < 50000; ++i) {
        const double value = static_cast<double>(numbers.coordinate(5000));
        ASSERT_EQ(fixed(value, i % 6), printfFixed(value, i % 6));
    }
}

TEST(NumberFormat, FixedRoundsTiesToTheEvenDigit) {
    EXPECT_EQ(fixed(0.5, 0), "0");
    EXPECT_EQ(fixed(1.5, 0), "2");
    EXPECT_EQ(fixed(2.5, 0), "2");
    EXPECT_EQ(fixed(-2.5, 0), "-2");
    EXPECT_EQ(fixed(0.125, 2), "0.12");
    EXPECT_EQ(fixed(0.375, 2), "0.38");
    EXPECT_EQ(fixed(0.03125, 4), "0.0312");
}

TEST(NumberFormat, FixedTellsNearTiesApart) {
    EXPECT_EQ(fixed(2.675, 2), "2.67");
    EXPECT_EQ(fixed(1.005, 2), "1.00");
    EXPECT_EQ(fixed(std::nextafter(0.125, 1.0), 2), "0.13");
    EXPECT_EQ(fixed(std::nextafter(0.375, 0.0), 2), "0.37");
}

TEST(NumberFormat, FixedHasNoPointWithoutDecimals) {
    EXPECT_EQ(fixed(365, 0), "365");
    EXPECT_EQ(fixed(999999.5, 0), "1000000");
}

TEST(NumberFormat, FixedWritesTheLargestDouble) {
    const std::string text = fixed(std::numeric_limits<double>::lowest(), 9);
    EXPECT_EQ(text.size(), 1 + 309 + 1 + 9);
    EXPECT_EQ(text.substr(0, 11), "-1797693134");
}

TEST(NumberFormat, NegativeZeroKeepsItsSign) {
    EXPECT_EQ(fixed(-0.0, 4), "-0.0000");
    EXPECT_EQ(fixed(-0.00001, 4), "-0.0000");
    EXPECT_EQ(fixed6(-0.0F), "-0.000000");
    EXPECT_EQ(fixed6(-4.0e-7F), "-0.000000");
    EXPECT_EQ(general(-0.0), "-0");
}

TEST(NumberFormat, NotFiniteValuesHaveTheirSign) {
    EXPECT_EQ(fixed(kInfinity, 2), "inf");
    EXPECT_EQ(fixed(-kInfinity, 2), "-inf");
    EXPECT_EQ(fixed(std::copysign(kNan, 1.0), 2), "nan");
    EXPECT_EQ(fixed(std::copysign(kNan, -1.0), 2), "-nan");
    EXPECT_EQ(fixed6(std::numeric_limits<float>::infinity()), "inf");
    EXPECT_EQ(fixed6(-std::numeric_limits<float>::infinity()), "-inf");
    EXPECT_EQ(fixed6(std::copysign(std::numeric_limits<float>::quiet_NaN(), -1.0F)), "-nan");
    EXPECT_EQ(general(kInfinity), "inf");
    EXPECT_EQ(general(std::copysign(kNan, -1.0)), "-nan");
}

TEST(NumberFormat, Fixed6IsWhatPrintfGivesForAnyFloat) {
    RandomNumbers numbers;
    for (int i = 0; i < 200000; ++i) {
        const float value = numbers.anyFloat();
        if (std::isfinite(value)) {
            ASSERT_EQ(fixed6(value), printfFixed(static_cast<double>(value), 6));
        }
    }
}

TEST(NumberFormat, Fixed6IsWhatPrintfGivesForEvery997thFloatThatIsCalculatedWith) {
    constexpr std::uint32_t kSign = 0x80000000;
    const auto end = std::bit_cast<std::uint32_t>(2147483648.0F);
    for (std::uint32_t bits = 0; bits <= end; bits += 997) {
        for (const std::uint32_t sign : {0U, kSign}) {
            const auto value = std::bit_cast<float>(bits | sign);
            char got[kNumberTextSize];
            char expected[kNumberTextSize];
            *formatFixed6(got, value) = '\0';
            std::snprintf(expected, sizeof expected, "%.6f", static_cast<double>(value));
            ASSERT_STREQ(got, expected);
        }
    }
}

TEST(NumberFormat, Fixed6IsWhatPrintfGivesForCoordinates) {
    RandomNumbers numbers;
    for (const float largest : {0.00001F, 0.01F, 1.0F, 300.0F, 50000.0F, 3.0e9F}) {
        for (int i = 0; i < 50000; ++i) {
            const float value = numbers.coordinate(largest);
            ASSERT_EQ(fixed6(value), printfFixed(static_cast<double>(value), 6));
        }
    }
}

TEST(NumberFormat, Fixed6RoundsTiesToTheEvenDigit) {
    EXPECT_EQ(fixed6(1.0F / 128), "0.007812");
    EXPECT_EQ(fixed6(3.0F / 128), "0.023438");
    EXPECT_EQ(fixed6(-5.0F / 128), "-0.039062");
    for (int i = 1; i < 100001; i += 2) {
        const float tie = static_cast<float>(i) / 128;
        ASSERT_EQ(fixed6(tie), printfFixed(static_cast<double>(tie), 6));
    }
}

TEST(NumberFormat, Fixed6IsWhatPrintfGivesAroundEveryThousandth) {
    for (int i = 0; i < 20000; ++i) {
        const float middle = static_cast<float>(i) / 1000 + 0.0005F;
        for (const float value : {std::nextafter(middle, 0.0F), middle, std::nextafter(middle, 100.0F)}) {
            ASSERT_EQ(fixed6(value), printfFixed(static_cast<double>(value), 6));
            ASSERT_EQ(fixed6(-value), printfFixed(-static_cast<double>(value), 6));
        }
    }
}

TEST(NumberFormat, Fixed6WorksAroundEveryPowerOfTen) {
    for (float power = 1; power < 1.0e12F; power *= 10) {
        for (const float value : {std::nextafter(power, 0.0F), power, std::nextafter(power, 1.0e30F)}) {
            EXPECT_EQ(fixed6(value), printfFixed(static_cast<double>(value), 6));
            EXPECT_EQ(fixed6(-value), printfFixed(-static_cast<double>(value), 6));
        }
    }
}

TEST(NumberFormat, IntegersAreWhatPrintfGives) {
    RandomNumbers numbers;
    for (int i = 0; i < 400000; ++i) {
        const auto value = static_cast<std::int64_t>(numbers.below(0xFFFFFFFF) >> i % 32) - (i % 5 == 0 ? 70000 : 0);
        ASSERT_EQ(integer(value), std::to_string(value));
    }
    for (std::int64_t power = 1; power < 10000000000000; power *= 10) {
        for (const std::int64_t value : {power - 1, power, power + 1, -power}) {
            EXPECT_EQ(integer(value), std::to_string(value));
        }
    }
}

TEST(NumberFormat, IntegersAreWhatPrintfGivesWhereTheNumberOfPiecesChanges) {
    for (const std::int64_t value : {999, 1000, 4095, 4096, 999999, 1000000, 4095999, 4096000, 999999999, 1000000000}) {
        EXPECT_EQ(integer(value), std::to_string(value));
    }
    for (const std::int64_t value : {4095999999, 4096000000, 4294967295, 4294967296}) {
        EXPECT_EQ(integer(value), std::to_string(value));
    }
}

TEST(NumberFormat, Fixed6CarriesIntoTheWholeNumber) {
    EXPECT_EQ(fixed6(0.99999994F), "1.000000");
    EXPECT_EQ(fixed6(9.9999999F), "10.000000");
    EXPECT_EQ(fixed6(-99.9999999F), "-100.000000");
}

TEST(NumberFormat, Fixed6WorksAroundTwoToThe31) {
    for (const float value : {2147483520.0F, 2147483648.0F, 2147483904.0F, 4294967296.0F, 3.4028235e38F}) {
        EXPECT_EQ(fixed6(value), printfFixed(static_cast<double>(value), 6));
        EXPECT_EQ(fixed6(-value), printfFixed(-static_cast<double>(value), 6));
    }
}

TEST(NumberFormat, Fixed6WritesDenormalsAsZero) {
    EXPECT_EQ(fixed6(std::numeric_limits<float>::denorm_min()), "0.000000");
    EXPECT_EQ(fixed6(-std::numeric_limits<float>::min()), "-0.000000");
}

TEST(NumberFormat, GeneralIsWhatPrintfGivesForAnyDouble) {
    RandomNumbers numbers;
    for (int i = 0; i < 50000; ++i) {
        const double value = numbers.anyDouble();
        if (std::isfinite(value)) {
            ASSERT_EQ(general(value), printfGeneral(value));
        }
    }
}

TEST(NumberFormat, GeneralIsWhatPrintfGivesForMeasures) {
    RandomNumbers numbers;
    for (const float largest : {1.0e-12F, 0.001F, 1.0F, 1000.0F, 9.0e6F}) {
        for (int i = 0; i < 10000; ++i) {
            const auto value = static_cast<double>(numbers.coordinate(largest));
            ASSERT_EQ(general(value), printfGeneral(value));
        }
    }
}

TEST(NumberFormat, GeneralHasSixDigitsAndNoZerosBehind) {
    EXPECT_EQ(general(static_cast<double>(544.3F)), "544.3");
    EXPECT_EQ(general(2452), "2452");
    EXPECT_EQ(general(365), "365");
    EXPECT_EQ(general(1e5), "100000");
    EXPECT_EQ(general(1e6), "1e+06");
    EXPECT_EQ(general(999999.5), "1e+06");
    EXPECT_EQ(general(0.0001), "0.0001");
    EXPECT_EQ(general(0.00001), "1e-05");
    EXPECT_EQ(general(4.09e-13), "4.09e-13");
    EXPECT_EQ(general(1e-300), "1e-300");
}

TEST(NumberFormat, IntegersHaveNoLimitButTheirType) {
    EXPECT_EQ(integer(0), "0");
    EXPECT_EQ(integer(-1), "-1");
    EXPECT_EQ(integer(2147483648), "2147483648");
    EXPECT_EQ(integer(std::numeric_limits<std::int64_t>::min()), "-9223372036854775808");
}

TEST(NumberFormat, ThePointStaysAPointInALocaleWithACommaThere) {
    const CommaLocale locale;
    if (!locale.isSet()) {
        GTEST_SKIP() << "this system has no locale with a decimal comma";
    }
    ASSERT_EQ(printfFixed(0.5, 1), "0,5");
    EXPECT_EQ(fixed(0.5, 1), "0.5");
    EXPECT_EQ(fixed6(0.5F), "0.500000");
    EXPECT_EQ(general(0.5), "0.5");
}

}  // namespace
}  // namespace talvek::test
