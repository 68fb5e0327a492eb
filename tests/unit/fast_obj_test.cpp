// The fast way through plain OBJ lines against reading token by token.
#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <filesystem>
#include <random>

#include "Vexo_Lib/obj.h"
#include "Vexo_Lib/obj_lines.h"
#include "base/fast_digits.h"
#include "support/plain_obj.h"
#include "support/test_files.h"

namespace talvek::test {
namespace {

class Random {
  public:
    explicit Random(unsigned seed) : generator_(seed) {}

    /// 0 to `count` - 1.
    int below(int count) { return std::uniform_int_distribution<int>(0, count - 1)(generator_); }
    bool oneIn(int count) { return below(count) == 0; }
    template <std::size_t N>
    std::string oneOf(const char* const (&choices)[N]) {
        return choices[below(N)];
    }
    std::string digits(int count) {
        std::string text;
        for (int i = 0; i < count; ++i) {
            text += static_cast<char>('0' + below(10));
        }
        return text;
    }

  private:
    std::mt19937 generator_;
};

// Half-way between floats, or so near that a double cannot tell; and what is a number without looking like one.
constexpr const char* kOddNumbers[] = {"16777217.0",
                                       "16777219",
                                       "8388608.5",
                                       "8388609.5",
                                       "1.00000005960464477",
                                       "1.00000005960464478",
                                       "1.0000001788139343",
                                       "0.50000002980232239",
                                       "67108866.00000000",
                                       "99999999.9999999",
                                       "99999999.99999999",
                                       "-0.000000",
                                       "-0",
                                       "+1.5",
                                       ".5",
                                       "-.5",
                                       "5.",
                                       "1e3",
                                       "1.5E-3",
                                       "1.2.3",
                                       "--1.0",
                                       "1-2.0",
                                       "1.-2",
                                       "-",
                                       "nan",
                                       "inf",
                                       "0x1p3",
                                       "1,5",
                                       "1.5f",
                                       "x",
                                       "v",
                                       "f",
                                       "123456789.5",
                                       "0.000000000000000000000000000000000000000000001",
                                       "\x80\xFF",
                                       "1.5\x80",
                                       "1.5\x01",
                                       "1.00000000000000000000000000000000000000000000000000000000000000001"};

std::string number(Random& random) {
    if (random.oneIn(12)) {
        return random.oneOf(kOddNumbers);
    }
    const std::string sign = random.oneIn(2) ? "-" : "";
    const std::string whole = random.digits(1 + random.below(random.oneIn(4) ? 9 : 3));
    const int decimals = random.oneIn(4) ? random.below(11) : 6;
    return sign + whole + (decimals > 0 ? "." + random.digits(decimals) : "");
}

std::string index(Random& random) {
    constexpr const char* kOdd[] = {"-1", "0", "+3",       "123456789", "99999999999",
                                    "x",  "",  "00000001", "12345678",  "7\x80"};
    return random.oneIn(15) ? random.oneOf(kOdd) : random.digits(1 + random.below(8));
}

std::string corner(Random& random, int form) {
    std::string text = index(random);
    if (form == 1 || form == 3) {
        text += "/" + index(random);
    }
    if (form == 2) {
        text += "/";
    }
    return form >= 2 ? text + "/" + index(random) : text;
}

std::string gap(Random& random) {
    constexpr const char* kOdd[] = {"  ", "\t", " \n", "\r\n", "\v", "\f ", "", "     "};
    return random.oneIn(25) ? random.oneOf(kOdd) : " ";
}

// Longer than the window that is looked at, with the letters that begin records in it.
constexpr const char* kLongName =
    "o a-name-of-more-than-ninety-six-characters-which-is-longer-than-the-window-that-is-looked-at-and-has-v-and-f";

std::string line(Random& random) {
    constexpr const char* kOthers[] = {"# a comment",
                                       "# the v component of f",
                                       "#",
                                       "",
                                       "   ",
                                       "g left_hand",
                                       "usemtl stone",
                                       "s off",
                                       "vp 0.1 0.2",
                                       "vn 0.000000 -1.000000 0.000000",
                                       "vn 0 1 v 2 3 4",
                                       "vn 1e-5 f",
                                       "o a-name-of-more-than-48-characters-which-has-no-record-in-it",
                                       kLongName};
    if (random.oneIn(8)) {
        return random.oneOf(kOthers);
    }
    const int kind = random.below(4);
    std::string text = kind == 0 ? "vt" : kind == 1 ? "f" : "v";
    const int form = random.below(4);
    const int count = (kind == 0 ? 2 : 3) + (random.oneIn(10) ? random.below(3) - 1 : 0);
    for (int i = 0; i < count; ++i) {
        text += gap(random) + (kind == 1 ? corner(random, form) : number(random));
    }
    return text + (random.oneIn(20) ? " " : "");
}

std::string randomText(Random& random, int lines) {
    std::string text;
    for (int i = 0; i < lines; ++i) {
        text += line(random) + (random.oneIn(30) ? "\r\n" : random.oneIn(60) ? " " : "\n");
    }
    return text;
}

void expectReadAlike(const std::string& text) {
    const TempFolder folder;
    writeFile(folder.file("mesh.obj"), text);
    const std::unique_ptr<Object3D> mesh = ReadObjFile(folder.file("mesh.obj").c_str(), true);
    ASSERT_NE(mesh, nullptr);
    expectSame(*mesh, readObjPlainly(text));
}

TEST(FastObj, ReadsRandomLinesAsTokens) {
    for (unsigned seed = 0; seed < 200; ++seed) {
        Random random(seed);
        SCOPED_TRACE(seed);
        expectReadAlike(randomText(random, 200));
        if (HasFailure()) {
            return;
        }
    }
}

// Every line comes to lie across the end of a piece of the file in some place.
TEST(FastObj, ReadsAcrossThePiecesOfAFile) {
    Random random(1);
    const std::string lines = randomText(random, 3000);
    for (const std::size_t shift : {0U, 1U, 2U, 3U, 5U, 8U, 13U, 21U, 34U, 55U, 89U}) {
        SCOPED_TRACE(shift);
        std::string text = "#" + std::string(shift, '-') + "\n";
        while (text.size() < 600000) {
            text += lines;
        }
        expectReadAlike(text);
    }
}

TEST(FastObj, ReadsAnEndAtAnyPlaceOfALine) {
    const std::string text = "v 1.25 -0.5 12.000001\nvt 0.5 0.25\nf 1/2/3 4/5/6 7/8/9\nf 1 2 3\nv 1 2 3\n";
    for (std::size_t length = 0; length <= text.size(); ++length) {
        SCOPED_TRACE(length);
        expectReadAlike(text.substr(0, length));
        expectReadAlike(std::string(200, '\n') + text.substr(0, length));
    }
}

TEST(FastObj, ReadsFloatsFromAllDecimalsWithOneRounding) {
    Random random(2);
    std::string text;
    for (int i = 0; i < 200000; ++i) {
        const int whole = 1 + random.below(8);
        text += i % 3 == 0 ? "v " : "";
        text += random.digits(whole) + "." + random.digits(1 + random.below(15 - whole)) + (i % 3 == 2 ? "\n" : " ");
    }
    expectReadAlike(text);
}

// Numbers so near the middle between two floats that a double cannot tell them from it.
TEST(FastObj, RoundsOnceNextToTheMiddleBetweenFloats) {
    Random random(4);
    std::string text;
    int found = 0;
    while (found < 300) {
        const std::int64_t odd = 2 * (8388608 + random.below(8388608)) + 1;  // odd / 2^24 lies between two floats
        const unsigned __int128 scaled = static_cast<unsigned __int128>(odd) * 100000000000000;
        const auto below = static_cast<std::int64_t>(scaled >> 24);
        const auto rest = static_cast<std::int64_t>(scaled & ((1U << 24) - 1));
        const std::int64_t nearest = rest < (1 << 23) ? below : below + 1;
        if (std::min<std::int64_t>(rest, (1 << 24) - rest) < 150000) {
            ++found;
            const std::string digits = std::to_string(nearest);
            text += (found % 3 == 1 ? "v " : "") + digits.substr(0, 1) + "." + digits.substr(1) +
                    (found % 3 == 0 ? "\n" : " ");
        }
    }
    expectReadAlike(text);
}

TEST(FastObj, DoesNotTakeLongForALineOfManyWords) {
    std::string text;
    for (int i = 0; i < 200000; ++i) {
        text += "x ";
    }
    expectReadAlike(text + "f 1 2 3\n");
}

TEST(FastObj, ReadsMeshesOfOthers) {
    if (realMeshFolder().empty()) {
        GTEST_SKIP() << "no meshes of others here";
    }
    for (const auto& entry : std::filesystem::recursive_directory_iterator(realMeshFolder() + "/obj")) {
        if (entry.path().extension() == ".obj") {
            SCOPED_TRACE(entry.path());
            expectReadAlike(readFile(entry.path().string()));
        }
    }
}

void expectSameRecords(ObjRecords& a, ObjRecords& b) {
    const auto expectSameList = [](auto& x, auto& y) {
        const std::int64_t count = x.count();
        ASSERT_EQ(count, y.count());
        const auto left = x.takeArray();
        const auto right = y.takeArray();
        EXPECT_TRUE(hasSameBits(left.get(), right.get(), count));
    };
    expectSameList(a.coordinates, b.coordinates);
    expectSameList(a.texels, b.texels);
    expectSameList(a.vertexIndices, b.vertexIndices);
    expectSameList(a.texelIndices, b.texelIndices);
    EXPECT_EQ(a.leadingCornersWithoutTexel, b.leadingCornersWithoutTexel);
    EXPECT_TRUE(hasSameBits(a.lastPosition, b.lastPosition, 3));
    EXPECT_TRUE(hasSameBits(a.lastTexel, b.lastTexel, 2));
}

TEST(FastObj, LeavesNoPlainLineToTheGeneralWay) {
    for (const char* line :
         {"v 1 2 3", "v 1.25 -0.5 12.000001", "v 12345678.1234567 -0.00000001 7", "vt 0.5 0.25", "vn 0 0.6 -0.8",
          "f 1 2 3", "f 12345678 2 3", "f 1/2 3/4 5/6", "f 1//2 3//4 5//6", "f 1/2/3 4/5/6 7/8/9", "# a comment", ""}) {
        const std::string text =
            std::string(kPlainLineMargin, '\n') + line + "\nv not plain" + std::string(2 * kPlainLineWindow, ' ');
        const char* begin = text.data() + kPlainLineMargin;
        const char* next = begin + std::string_view(line).size() + 1;
        ObjRecords records;
        EXPECT_EQ(readPlainLines(begin, text.data() + text.size(), records), next) << line;
        EXPECT_EQ(readPlainLinesPortably(begin, text.data() + text.size(), records), next) << line;
    }
}

TEST(FastObj, ReadsAlikeOnMachinesWithoutVectors) {
    Random random(3);
    for (int i = 0; i < 20000; ++i) {
        const std::string text = std::string(kPlainLineMargin, '\n') + randomText(random, 4) + std::string(100, ' ');
        const char* begin = text.data() + kPlainLineMargin;
        ObjRecords fast;
        ObjRecords portable;
        const char* fastEnd = readPlainLines(begin, text.data() + text.size(), fast);
        ASSERT_EQ(fastEnd - begin, readPlainLinesPortably(begin, text.data() + text.size(), portable) - begin) << text;
        expectSameRecords(fast, portable);
        ASSERT_FALSE(HasFailure()) << text;
    }
}

TEST(FastDigits, FindsEveryCharacterThatIsNoDigit) {
    for (int c = 0; c < 256; ++c) {
        for (unsigned place = 0; place < 32; ++place) {
            std::string text(32, '7');
            text[place] = static_cast<char>(c);
            const std::uint32_t expected = c >= '0' && c <= '9' ? 0 : 1U << place;
            ASSERT_EQ(nonDigitsOf32(text.data()), expected) << c;
            ASSERT_EQ(nonDigitsOf32Portable(text.data()), expected) << c;
        }
    }
}

TEST(FastDigits, ReadsOneToSixteenDigits) {
    const std::string text = "9081726354433221x";
    for (unsigned count = 1; count <= 16; ++count) {
        EXPECT_EQ(valueOfManyDigits(text.data(), count), std::stoull(text.substr(0, count)));
    }
}

}  // namespace
}  // namespace talvek::test
