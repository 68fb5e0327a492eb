// Messages: their conversions, the end of the buffer, and texts that stand where a format would.
#include "base/message_format.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

namespace talvek::test {
namespace {

std::string message(std::string_view format, std::initializer_list<MessageArgument> arguments, std::size_t size = 256) {
    std::string buffer(size, '?');
    formatMessage(buffer, format, arguments);
    return buffer.substr(0, buffer.find('\0'));
}

std::string expanded(std::string_view text) {
    std::string out(text);
    out.resize(expandWithoutArguments(text, out.data()));
    return out;
}

TEST(MessageFormat, WritesTextAsItStands) {
    EXPECT_EQ(message("\nMaterial parameters:\n", {}), "\nMaterial parameters:\n");
    EXPECT_EQ(message("", {}), "");
}

TEST(MessageFormat, TakesOneArgumentPerConversion) {
    EXPECT_EQ(message("%s=%d, %i: %.2f|%.0f", {std::string_view("name"), -5, 7, 2.345, 365.0}), "name=-5, 7: 2.35|365");
}

TEST(MessageFormat, WritesTheLimitsOfAnInteger) {
    EXPECT_EQ(message("%d %i", {std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max()}),
              "-2147483648 2147483647");
}

TEST(MessageFormat, LeavesPercentSignsOfAnArgumentAlone) {
    EXPECT_EQ(message("File %s.", {std::string_view("50%s%%d%n.obj")}), "File 50%s%%d%n.obj.");
}

TEST(MessageFormat, CutsAtTheEndOfTheBuffer) {
    EXPECT_EQ(message("abcdef", {}, 4), "abc");
    EXPECT_EQ(message("ab%sgh", {std::string_view("cdef")}, 5), "abcd");
    EXPECT_EQ(message("ab%d", {12345}, 5), "ab12");
    EXPECT_EQ(message("abc", {}, 1), "");
}

TEST(MessageFormat, FillsTheBufferExactly) {
    EXPECT_EQ(message("abc", {}, 4), "abc");
    EXPECT_EQ(message("%s", {std::string_view("abc")}, 4), "abc");
}

TEST(MessageFormat, CutsTheLargestNumber) {
    EXPECT_EQ(message("%.9f", {1e308}, 11), "1000000000");
}

TEST(TextExpansion, TwoPercentSignsAreOne) {
    EXPECT_EQ(expanded("100%%"), "100%");
    EXPECT_EQ(expanded("%%%%"), "%%");
    EXPECT_EQ(expanded("%%%"), "%%");
}

TEST(TextExpansion, EveryOtherConversionStandsAsWritten) {
    EXPECT_EQ(expanded("%s %d %n %x"), "%s %d %n %x");
    EXPECT_EQ(expanded("50%"), "50%");
    EXPECT_EQ(expanded("%"), "%");
    EXPECT_EQ(expanded("%.3f%%%s"), "%.3f%%s");
}

TEST(TextExpansion, WorksInItsOwnMemory) {
    std::string text = "a%%b%%c";
    text.resize(expandWithoutArguments(text, text.data()));
    EXPECT_EQ(text, "a%b%c");
}

TEST(TextExpansion, KeepsEmptyText) {
    EXPECT_EQ(expanded(""), "");
}

}  // namespace
}  // namespace talvek::test
