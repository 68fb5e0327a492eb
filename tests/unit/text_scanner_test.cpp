// Tokens and numbers out of files of any size, across the borders of the pieces in which a file is read.
#include "base/text_scanner.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/test_files.h"

namespace talvek::test {
namespace {

constexpr std::size_t kPiece = 262144;

class Scanner : public ::testing::Test {
  protected:
    std::vector<std::string> tokensOf(std::string_view content, const CharacterSet& separators = kBlankSeparators) {
        writeFile(path_, content);
        InputFile file(path_.c_str());
        TextScanner scanner(file, separators);
        std::vector<std::string> tokens;
        std::string_view token;
        while (scanner.nextToken(token)) {
            tokens.emplace_back(token);
        }
        EXPECT_FALSE(scanner.nextToken(token)) << "the end stays the end";
        return tokens;
    }

    /// Reads three numbers, -1 where there is none, and the token behind them.
    std::string numbersOf(std::string_view content) {
        writeFile(path_, content);
        InputFile file(path_.c_str());
        TextScanner scanner(file, kBlankSeparators);
        std::string result;
        for (int i = 0; i < 3; ++i) {
            float value = -1;
            scanner.readFloat(value);
            result += std::to_string(value).substr(0, 4) + " ";
        }
        std::string_view token;
        scanner.nextToken(token);
        return result + std::string(token);
    }

    TempFolder folder_;
    std::string path_ = folder_.file("text");
};

using Words = std::vector<std::string>;

TEST_F(Scanner, SplitsAtBlanks) {
    EXPECT_EQ(tokensOf("v 1\t2\n3\r\nf\v4\f5"), (Words{"v", "1", "2", "3", "f", "4", "5"}));
}

TEST_F(Scanner, SkipsRunsOfBlanks) {
    EXPECT_EQ(tokensOf("  \n\n a \t\r\n  b  \n"), (Words{"a", "b"}));
}

TEST_F(Scanner, FindsNothingInAnEmptyFileOrInBlanks) {
    EXPECT_EQ(tokensOf(""), Words{});
    EXPECT_EQ(tokensOf(" \n\t\r\n"), Words{});
    EXPECT_EQ(tokensOf(std::string(3 * kPiece, ' ')), Words{});
}

TEST_F(Scanner, NeedsNoLineEndAtTheEndOfTheFile) {
    EXPECT_EQ(tokensOf("a b"), (Words{"a", "b"}));
    EXPECT_EQ(tokensOf("a"), Words{"a"});
}

TEST_F(Scanner, TakesBytesOutsideAsciiAsText) {
    EXPECT_EQ(tokensOf("\xc3\xa9\xa0 \x85x"), (Words{"\xc3\xa9\xa0", "\x85x"}));
    EXPECT_EQ(tokensOf(std::string_view("a\0b c", 5)), (Words{std::string("a\0b", 3), "c"}));
}

TEST_F(Scanner, KnowsOtherSeparators) {
    EXPECT_EQ(tokensOf("a b\n\nc\r\n", CharacterSet("\n")), (Words{"a b", "c\r"}));
}

TEST_F(Scanner, KeepsATokenWholeWhereverThePieceEnds) {
    for (std::size_t before = kPiece - 9; before <= kPiece + 1; ++before) {
        const Words tokens = tokensOf(std::string(before, ' ') + "stone/1/2 x");
        ASSERT_EQ(tokens, (Words{"stone/1/2", "x"})) << before;
    }
}

TEST_F(Scanner, KeepsATokenWholeBehindOthers) {
    std::string text;
    Words expected;
    while (text.size() < 3 * kPiece) {
        expected.push_back("token" + std::to_string(text.size()));
        text += expected.back() + (expected.size() % 3 == 0 ? "\r\n" : " ");
    }
    EXPECT_EQ(tokensOf(text), expected);
}

TEST_F(Scanner, KeepsATokenThatEndsWithThePieceAndTheFile) {
    EXPECT_EQ(tokensOf(std::string(kPiece - 3, '\n') + "end"), Words{"end"});
    EXPECT_EQ(tokensOf(std::string(2 * kPiece - 3, '\n') + "end"), Words{"end"});
}

TEST_F(Scanner, CutsALongTokenAndDropsItsRest) {
    for (const std::size_t length : {TextScanner::kLongestToken - 1, TextScanner::kLongestToken,
                                     TextScanner::kLongestToken + 1, kPiece, 3 * kPiece + 17}) {
        const std::string longToken(length, 'x');
        const Words tokens = tokensOf("a " + longToken + " b");
        ASSERT_EQ(tokens.size(), 3) << length;
        EXPECT_EQ(tokens[1], longToken.substr(0, TextScanner::kLongestToken));
        EXPECT_EQ(tokens[2], "b");
    }
}

TEST_F(Scanner, CutsALongTokenAtTheEndOfTheFile) {
    const Words tokens = tokensOf(std::string(kPiece + 5, 'x'));
    ASSERT_EQ(tokens.size(), 1);
    EXPECT_EQ(tokens[0].size(), TextScanner::kLongestToken);
}

TEST_F(Scanner, ReadsNumbers) {
    EXPECT_EQ(numbersOf("1.5 2.5\n-3.5 next"), "1.50 2.50 -3.5 next");
}

TEST_F(Scanner, LeavesWhatFollowsANumberDirectly) {
    EXPECT_EQ(numbersOf("1.5 2.5 3.5abc"), "1.50 2.50 3.50 abc");
    EXPECT_EQ(numbersOf("1.5.5.5 x"), "1.50 0.50 0.50 x");
    EXPECT_EQ(numbersOf("1-2-3/4"), "1.00 -2.0 -3.0 /4");
}

TEST_F(Scanner, LeavesAWordWhereANumberShouldStand) {
    EXPECT_EQ(numbersOf("1.5 word 2.5"), "1.50 -1.0 -1.0 word");
    EXPECT_EQ(numbersOf("1,5 2"), "1.00 -1.0 -1.0 ,5");
}

TEST_F(Scanner, ReadsNoNumberAtTheEndOfTheFile) {
    EXPECT_EQ(numbersOf("1.5 2.5"), "1.50 2.50 -1.0 ");
    EXPECT_EQ(numbersOf(""), "-1.0 -1.0 -1.0 ");
}

TEST_F(Scanner, ReadsANumberWholeWhereverThePieceEnds) {
    for (std::size_t before = kPiece - 12; before <= kPiece + 1; ++before) {
        ASSERT_EQ(numbersOf(std::string(before, '\n') + "1.25 2.25e0 3.25 x"), "1.25 2.25 3.25 x") << before;
    }
}

TEST_F(Scanner, ReadsANumberOfManyDigits) {
    EXPECT_EQ(numbersOf("1.5" + std::string(60000, '0') + " 2.5 3.5 x"), "1.50 2.50 3.50 x");
    EXPECT_EQ(numbersOf("1.5" + std::string(300000, '0') + " 2.5 3.5 x"), "1.50 2.50 3.50 x");
}

TEST_F(Scanner, AFolderIsNoFile) {
    EXPECT_FALSE(InputFile(folder_.path().c_str()).isOpen());
}

}  // namespace
}  // namespace talvek::test
