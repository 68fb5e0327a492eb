// Text becomes the number that strtof, strtod, atof and atoi read in the C locale.
#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <string>
#include <vector>

#include "base/number_text.h"
#include "support/comma_locale.h"
#include "support/random_numbers.h"

namespace talvek::test {
namespace {

/// What strtof and strtod make of a text without leading blanks, next to what we make of it.
void expectAsInC(const std::string& text) {
    char* end = nullptr;
    const float expectedFloat = std::strtof(text.c_str(), &end);
    float gotFloat = -77;
    const std::size_t used = parseFloat(text, gotFloat);
    EXPECT_EQ(used, static_cast<std::size_t>(end - text.c_str())) << "'" << text << "'";
    if (used > 0) {
        EXPECT_EQ(std::isnan(gotFloat), std::isnan(expectedFloat)) << text;
        EXPECT_TRUE(std::isnan(gotFloat) ||
                    std::bit_cast<std::uint32_t>(gotFloat) == std::bit_cast<std::uint32_t>(expectedFloat))
            << text << " gave " << gotFloat << " instead of " << expectedFloat;
    } else {
        EXPECT_EQ(gotFloat, -77) << text;
    }
    const double expectedDouble = std::strtod(text.c_str(), &end);
    double gotDouble = -77;
    EXPECT_EQ(parseDouble(text, gotDouble), static_cast<std::size_t>(end - text.c_str())) << text;
    EXPECT_TRUE(used == 0 || std::isnan(expectedDouble) ||
                std::bit_cast<std::uint64_t>(gotDouble) == std::bit_cast<std::uint64_t>(expectedDouble))
        << text << " gave " << gotDouble << " instead of " << expectedDouble;
}

void expectAllAsInC(const std::vector<std::string>& texts) {
    for (const std::string& text : texts) {
        expectAsInC(text);
        expectAsInC("-" + text);
        expectAsInC("+" + text);
    }
}

TEST(NumberParse, ReadsPlainDecimals) {
    expectAllAsInC({"0", "1", "12", "007", "1.5", "1.", ".5", "0.1", "3.14159265358979323846", "123456789.123456789",
                    "16777217", "9007199254740993", "0.000001", "00000.00001000"});
}

TEST(NumberParse, ReadsExponents) {
    expectAllAsInC({"1e5", "1E5", "1e+5", "1e-5", "1.5e3", ".5e1", "5.e1", "1e05", "1e0", "0e5", "0e99999", "12e-3",
                    "1e10", "9.99999e37", "4.09e-013"});
}

TEST(NumberParse, StopsAtAnExponentWithoutDigits) {
    expectAllAsInC({"1e", "1E", "1e+", "1e-", "1ex", "1e+x", "2.5e-", "1e 5"});
}

TEST(NumberParse, ReadsOnlyTheNumberAtTheStart) {
    expectAllAsInC({"1abc", "1.5.5", "1,5", "1/2/3", "1-2", "1+2", "3v", "2f", "1.0f", "1_000", "5%"});
}

TEST(NumberParse, LeavesTheValueWhereThereIsNoNumber) {
    expectAllAsInC({"",    "-",   "+",   ".", "-.", "e5", ".e5", "x",  "abc", "#", "-+1",
                    "+-1", "--1", "++1", "/", "n",  "na", "i",   "in", "- 1", "v"});
}

TEST(NumberParse, ReadsInfinities) {
    expectAllAsInC({"inf", "INF", "Inf", "infinity", "INFINITY", "iNfInItY", "infinit", "infx", "inf1"});
}

TEST(NumberParse, ReadsNotANumber) {
    expectAllAsInC({"nan", "NAN", "NaN", "nanx", "nan1", "nan(", "nan()", "nan(12)", "nan(a_b)", "nano"});
}

TEST(NumberParse, ANegativeNotANumberIsOne) {
    float value = 0;
    EXPECT_EQ(parseFloat("-nan", value), 4);
    EXPECT_TRUE(std::isnan(value));
    EXPECT_TRUE(std::signbit(value));
}

TEST(NumberParse, ReadsHexadecimalNumbers) {
    expectAllAsInC({"0x1", "0X1F", "0xfp0", "0x1p4", "0x1P-4", "0x1.8p1", "0x.8", "0x.8p3", "0x1.", "0xabcdef", "0xFp0",
                    "0X.Ap1", "0x1.fffffep127", "0x1.921fb54442d18p+1", "0x0p5", "0x1p", "0x1p+", "0x1pz", "0x10g"});
}

TEST(NumberParse, ReadsZeroWhereHexadecimalDigitsAreMissing) {
    expectAllAsInC({"0x", "0xg", "0x.", "0x.g", "0xp1", "0X-1"});
}

TEST(NumberParse, RoundsHexadecimalNumbersOnce) {
    expectAllAsInC({"0x1.000001p0", "0x1.000001000000001p0", "0x1.000003p0", "0x1.0000010000000000000000000001p0",
                    "0x123456789abcdef123456789abcdef", "0x1.ffffffp0", "0x1.fffffefffffffffp0"});
}

TEST(NumberParse, SaturatesHexadecimalNumbers) {
    expectAllAsInC({"0x1p128", "0x1p1024", "0x1.ffffffp127", "0x1p99999", "0x1p-99999", "0x1p-1074", "0x1p-1075",
                    "0x1p-149", "0x1p-150", "0x1.000002p-150", "0x1p-1076", "0x1.8p-149", "0x0.000001p-140"});
}

TEST(NumberParse, SaturatesHexadecimalNumbersOfManyDigits) {
    const std::string zeros(400, '0');
    expectAllAsInC({"0x1" + zeros, "0x0." + zeros + "1", "0x1" + zeros + "p-10", "0x0." + zeros + "1p10",
                    "0x1" + zeros + "p-1600", "0x0." + zeros + "1p1604"});
}

TEST(NumberParse, OverflowsToInfinity) {
    expectAllAsInC({"1e39", "3.4028235e38", "3.4028236e38", "3.40282357e38", "1e308", "1e309", "1.8e308", "1e400",
                    "1e99999", "1e999999999999999999999", "0.001e400", "123456789e301"});
}

TEST(NumberParse, UnderflowsToZero) {
    expectAllAsInC({"1e-46", "1e-60", "1e-324", "1e-400", "1e-99999", "1e-999999999999999999999", "0.0001e-400",
                    "12345e-500", "0.000000000000000000000000000000000000000000000000000000001"});
}

TEST(NumberParse, ReadsDenormals) {
    expectAllAsInC({"1e-45", "7e-46", "7.1e-46", "1.4e-45", "2.1e-45", "1.17549435e-38", "1.1754942e-38", "1e-40",
                    "4.9e-324", "2.5e-324", "2.4e-324", "2.2250738585072014e-308", "2.2250738585072011e-308"});
}

TEST(NumberParse, SaturatesNumbersOfManyDigits) {
    const std::string zeros(500, '0');
    expectAllAsInC({"1" + zeros, "0." + zeros + "1", "1" + zeros + "e-500", "0." + zeros + "1e501", zeros + "5",
                    "0." + zeros, "1" + zeros + ".5e-490"});
}

TEST(NumberParse, RoundsOnceToSinglePrecision) {
    // Read as a double first, the first of these would round to the even neighbour.
    expectAllAsInC({"1.00000017881393432617187499", "1.00000017881393432617187500", "1.00000017881393432617187501",
                    "1.000000059604644775390625", "1.000000059604644775390626", "8388609.5000000000000001"});
}

TEST(NumberParse, ReadsBackWhatPrintfWrites) {
    RandomNumbers numbers;
    for (int i = 0; i < 100000; ++i) {
        const float value = numbers.anyFloat();
        char text[128];
        std::snprintf(text, sizeof text, i % 2 == 0 ? "%.9g" : "%a", static_cast<double>(value));
        if (std::isfinite(value)) {
            float got = 0;
            ASSERT_EQ(parseFloat(text, got), std::string(text).size()) << text;
            ASSERT_EQ(std::bit_cast<std::uint32_t>(got), std::bit_cast<std::uint32_t>(value)) << text;
        }
    }
}

TEST(NumberParse, ReadsRandomDigitsAsInC) {
    RandomNumbers numbers;
    for (int i = 0; i < 30000; ++i) {
        std::string text;
        for (std::uint32_t left = 1 + numbers.below(25); left > 0; --left) {
            text += "0123456789.e-+"[numbers.below(14)];
        }
        expectAsInC(text);
        ASSERT_FALSE(HasFailure());
    }
}

TEST(NumberParse, ReadsRandomScientificNumbersAsInC) {
    RandomNumbers numbers;
    for (int i = 0; i < 30000; ++i) {
        char text[64];
        std::snprintf(text, sizeof text, "%u.%09ue%d", numbers.below(10), numbers.below(1000000000),
                      static_cast<int>(numbers.below(i % 2 == 0 ? 100 : 700)) - (i % 2 == 0 ? 50 : 350));
        expectAsInC(text);
        ASSERT_FALSE(HasFailure());
    }
}

TEST(NumberParse, ThePointStaysAPointInALocaleWithACommaThere) {
    const CommaLocale locale;
    if (!locale.isSet()) {
        GTEST_SKIP() << "this system has no locale with a decimal comma";
    }
    EXPECT_EQ(toDouble("1.5"), 1.5);
    EXPECT_EQ(toDouble("1,5"), 1.0);
    EXPECT_EQ(toDouble("0x1.8"), 1.5);
}

TEST(NumberParse, AtofSkipsBlanks) {
    EXPECT_EQ(toDouble(" \t\n\v\f\r2.5 3"), 2.5);
    EXPECT_EQ(toDouble(""), 0);
    EXPECT_EQ(toDouble("   "), 0);
    EXPECT_EQ(toDouble("word"), 0);
}

TEST(NumberParse, AtoiReadsDigitsUpToTheFirstOtherCharacter) {
    for (const char* text : {"0", "7", "-7",   "+7",  "7/3/9",      " \t12",       "12 13", "1.9", "-",   "+",
                             "",  "x", "0x10", "1e3", "2147483647", "-2147483648", "00012", "--1", "- 1", "\r\n5"}) {
        EXPECT_EQ(toInt(text), std::atoi(text)) << text;  // NOLINT(cert-err34-c)
    }
}

TEST(NumberParse, IntegersThatOverflowAreTheNearestInt) {
    constexpr std::int32_t kSmallest = std::numeric_limits<std::int32_t>::min();
    constexpr std::int32_t kLargest = std::numeric_limits<std::int32_t>::max();
    EXPECT_EQ(toInt("2147483648"), kLargest);
    EXPECT_EQ(toInt("4294967297"), kLargest);
    EXPECT_EQ(toInt("99999999999999999999999999"), kLargest);
    EXPECT_EQ(toInt("-2147483649"), kSmallest);
    EXPECT_EQ(toInt("-99999999999999999999999999"), kSmallest);
}

TEST(NumberParse, SaturationTruncatesTowardsZero) {
    EXPECT_EQ(saturateToInt(1.99), 1);
    EXPECT_EQ(saturateToInt(-1.99), -1);
    EXPECT_EQ(saturateToInt(1e300), std::numeric_limits<std::int32_t>::max());
    EXPECT_EQ(saturateToInt(-1e300), std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(saturateToInt(std::numeric_limits<double>::infinity()), std::numeric_limits<std::int32_t>::max());
    EXPECT_EQ(saturateToInt(std::numeric_limits<double>::quiet_NaN()), 0);
}

}  // namespace
}  // namespace talvek::test
