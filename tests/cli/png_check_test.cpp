#include "talvek/mineral_map/png_check.h"

#include <gtest/gtest.h>

#include "cli/fixtures.h"
#include "support/png.h"

namespace talvek::test {
namespace {

using host::isIntactPng;

/// A PNG that another program has written.
std::string foreignPng() {
    const TempFolder folder;
    writeFixtures(folder);
    return readFile(folder.file("half.png"));
}

TEST(PngCheck, IntactOnes) {
    const std::string png = foreignPng();
    EXPECT_TRUE(host::isPng(png));
    EXPECT_TRUE(isIntactPng(png));
    EXPECT_TRUE(isIntactPng(png + "what some programs write behind it"));
    EXPECT_TRUE(isIntactPng(pngBytes({1, 1, 8, 2}, "", std::string(4, '\0'))));
}

TEST(PngCheck, EveryPrefixIsCutShort) {
    const std::string png = foreignPng();
    for (std::size_t size = 8; size < png.size(); ++size) {
        EXPECT_FALSE(isIntactPng(std::string_view(png).substr(0, size))) << size;
    }
}

TEST(PngCheck, EveryChangedBitIsNoticed) {
    std::string png = foreignPng();
    for (std::size_t at = 8; at < png.size(); ++at) {
        for (int bit = 0; bit < 8; ++bit) {
            const char before = png[at];
            png[at] = static_cast<char>(before ^ 1 << bit);
            EXPECT_FALSE(isIntactPng(png)) << "byte " << at << ", bit " << bit;
            png[at] = before;
        }
    }
}

TEST(PngCheck, TheLastChunkHasToBeThere) {
    const std::string png = foreignPng();
    const std::string withoutEnd = png.substr(0, png.size() - 12);
    EXPECT_FALSE(isIntactPng(withoutEnd));
    EXPECT_TRUE(isIntactPng(withoutEnd + pngChunk("tEXt", "Title\0a stone") + pngChunk("IEND", "")));
}

TEST(PngCheck, OtherFilesAreNone) {
    EXPECT_FALSE(host::isPng(""));
    EXPECT_FALSE(host::isPng("\x89PNG"));
    EXPECT_FALSE(host::isPng("BM and more"));
}

}  // namespace
}  // namespace talvek::test
