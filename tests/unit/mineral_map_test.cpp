// Mineral maps: which bitmaps are read, how, and which are not.
#include "weathering/mineral_map.h"

#include <gtest/gtest.h>

#include <limits>
#include <vector>

#include "support/bitmaps.h"
#include "support/test_files.h"

namespace talvek::test {
namespace {

std::unique_ptr<MineralMap> readBytes(const std::string& bytes) {
    const TempFolder folder;
    const std::string name = folder.file("map.bmp");
    writeFile(name, bytes);
    return readMineralMap(name.c_str());
}

std::unique_ptr<MineralMap> read(const Bitmap& bitmap) {
    return readBytes(bitmapBytes(bitmap));
}

/// Every pixel has a colour of its own.
Color place(int x, int y) {
    return {static_cast<std::uint8_t>(x), static_cast<std::uint8_t>(y), static_cast<std::uint8_t>(x + 10 * y)};
}

void expectPlaces(const MineralMap& map) {
    for (int y = 0; y < map.height; ++y) {
        for (int x = 0; x < map.width; ++x) {
            const float* pixel = map.pixel(x, y);
            ASSERT_EQ(pixel[0], static_cast<float>(x)) << x << ", " << y;
            ASSERT_EQ(pixel[1], static_cast<float>(y)) << x << ", " << y;
            ASSERT_EQ(pixel[2], static_cast<float>(x + 10 * y)) << x << ", " << y;
        }
    }
}

TEST(MineralMap, TakesRowsWithAndWithoutPadding) {
    for (const int width : {1, 2, 3, 4, 5, 8}) {
        const auto map = read(paintedBitmap(width, 3, place));
        ASSERT_NE(map, nullptr) << width;
        EXPECT_EQ(map->width, width);
        EXPECT_EQ(map->height, 3);
        EXPECT_EQ(map->channels, 3);
        expectPlaces(*map);
    }
}

TEST(MineralMap, WorksTheImageSizeOut) {
    for (const int width : {4, 5}) {
        Bitmap bitmap = paintedBitmap(width, 3, place);
        bitmap.imageSize = 0;
        const auto map = read(bitmap);
        ASSERT_NE(map, nullptr) << width;
        expectPlaces(*map);
    }
}

TEST(MineralMap, KeepsTheOrderOfRowsOfATopDownBitmap) {
    Bitmap bitmap = paintedBitmap(3, 2, place);
    bitmap.height = -2;
    const auto map = read(bitmap);
    ASSERT_NE(map, nullptr);
    EXPECT_EQ(map->height, 2);
    expectPlaces(*map);
}

TEST(MineralMap, PassesOverWhatStandsBeforeThePixels) {
    Bitmap bitmap = paintedBitmap(3, 2, place);
    bitmap.gap = std::string(10000, 'x');
    bitmap.pixelOffset = 10054;
    const auto map = read(bitmap);
    ASSERT_NE(map, nullptr);
    expectPlaces(*map);
}

TEST(MineralMap, TakesNumbersOfColoursAsTheyStand) {
    Bitmap bitmap;
    bitmap.width = 3;
    bitmap.height = 2;
    bitmap.bitsPerPixel = 8;
    bitmap.gap = std::string(1024, '\x7f');
    bitmap.pixelOffset = 1078;
    bitmap.pixels = {1, 2, 3, 99, '\xff', 5, 6, 99};
    bitmap.imageSize = 8;
    const auto map = read(bitmap);
    ASSERT_NE(map, nullptr);
    EXPECT_EQ(map->channels, 1);
    EXPECT_EQ(std::vector<float>(map->data.get(), map->data.get() + 6), (std::vector<float>{1, 2, 3, 255, 5, 6}));
}

TEST(MineralMap, OfOtherBytesPerPixelIsBlank) {
    for (const int bytes : {2, 4}) {
        Bitmap bitmap;
        bitmap.width = 2;
        bitmap.height = 1;
        bitmap.bitsPerPixel = static_cast<std::uint16_t>(8 * bytes);
        bitmap.pixels = std::string(static_cast<std::size_t>(2 * bytes), '\x7f');
        const auto map = read(bitmap);
        ASSERT_NE(map, nullptr) << bytes;
        EXPECT_EQ(map->channels, bytes);
        EXPECT_EQ(std::vector<float>(map->data.get(), map->data.get() + 2 * bytes),
                  std::vector<float>(static_cast<std::size_t>(2 * bytes), 0.0F));
    }
}

TEST(MineralMap, NeedsNoPaddingBehindTheLastRow) {
    Bitmap bitmap = paintedBitmap(3, 2, place);
    bitmap.pixels.resize(21);
    bitmap.imageSize = 21;
    const auto map = read(bitmap);
    ASSERT_NE(map, nullptr);
    expectPlaces(*map);
}

TEST(NoMineralMap, ComesOfAFileThatIsNotThere) {
    const TempFolder folder;
    EXPECT_EQ(readMineralMap(folder.file("map.bmp").c_str()), nullptr);
    EXPECT_EQ(readMineralMap(folder.path().c_str()), nullptr);
    EXPECT_EQ(readMineralMap(""), nullptr);
}

TEST(NoMineralMap, ComesOfAnotherSignature) {
    Bitmap bitmap = plainBitmap(2, 2, kWhite);
    bitmap.signature = "BA";
    EXPECT_EQ(read(bitmap), nullptr);
}

TEST(NoMineralMap, ComesOfAFileCutAnywhere) {
    const std::string whole = bitmapBytes(paintedBitmap(3, 2, place));
    for (std::size_t size = 0; size < whole.size(); ++size) {
        EXPECT_EQ(readBytes(whole.substr(0, size)), nullptr) << size;
    }
    EXPECT_NE(readBytes(whole), nullptr);
}

TEST(NoMineralMap, ComesOfAPixelOffsetInsideTheHeadersOrBehindTheFile) {
    for (const std::uint32_t offset : {0U, 13U, 14U, 53U, 80U, 0x7fffffffU, 0xffffffffU}) {
        Bitmap bitmap = plainBitmap(2, 2, kWhite);
        bitmap.pixelOffset = offset;
        EXPECT_EQ(read(bitmap), nullptr) << offset;
    }
}

TEST(NoMineralMap, ComesOfSizesThatTheFileCannotHave) {
    constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();
    constexpr std::int32_t kLeast = std::numeric_limits<std::int32_t>::min();
    const std::vector<std::pair<std::int32_t, std::int32_t>> sizes = {
        {-2, 2}, {kLeast, 1}, {2, kLeast}, {kMost, 1}, {1, kMost}, {kMost, kMost}, {kMost, -kMost}, {3, 2}, {2, 3}};
    for (const auto& [width, height] : sizes) {
        for (const int bits : {8, 24, 32, 65535}) {
            for (const bool isSizeStated : {true, false}) {
                Bitmap bitmap = plainBitmap(2, 2, kWhite);
                bitmap.pixels.resize(3);
                bitmap.width = width;
                bitmap.height = height;
                bitmap.bitsPerPixel = static_cast<std::uint16_t>(bits);
                bitmap.imageSize = isSizeStated ? 3 : 0;
                EXPECT_EQ(read(bitmap), nullptr) << width << " x " << height << ", " << bits;
            }
        }
    }
}

TEST(NoMineralMap, ComesOfAnImageSizeLargerThanTheFileOrTooSmallForTheRows) {
    for (const std::uint32_t size : {1U, 8U, 13U, 17U, 0xffffffffU}) {
        Bitmap bitmap = plainBitmap(2, 2, kWhite);
        bitmap.imageSize = size;
        EXPECT_EQ(read(bitmap), nullptr) << size;
    }
}

TEST(NoMineralMap, ComesOfFewerThanEightBitsPerPixel) {
    Bitmap bitmap;
    bitmap.width = 8;
    bitmap.height = 4;
    bitmap.bitsPerPixel = 1;
    bitmap.pixels = std::string(16, '\x55');
    EXPECT_EQ(read(bitmap), nullptr);
    bitmap.imageSize = 16;
    EXPECT_EQ(read(bitmap), nullptr);
}

TEST(MineralMap, WithoutPixelsIsAMap) {
    Bitmap bitmap;
    const auto map = read(bitmap);
    ASSERT_NE(map, nullptr);
    EXPECT_EQ(map->width, 0);
    EXPECT_EQ(map->height, 0);
}

TEST(MineralMap, ReadsBitmapsOfOtherPrograms) {
    const std::string folder = realMeshFolder();
    if (folder.empty()) {
        GTEST_SKIP() << "no real bitmaps here";
    }
    struct Expectation {
        const char* name;
        int width, height, channels;
    };
    constexpr Expectation kBitmaps[] = {{"base_anim", 171, 14, 4},
                                        {"cloth", 640, 640, 3},
                                        {"concave64", 64, 64, 1},
                                        {"gazebo_logo", 554, 234, 3},
                                        {"test64", 64, 64, 3}};
    for (const Expectation& expected : kBitmaps) {
        const auto map = readMineralMap((folder + "/bmp/" + expected.name + ".bmp").c_str());
        ASSERT_NE(map, nullptr) << expected.name;
        EXPECT_EQ(map->width, expected.width) << expected.name;
        EXPECT_EQ(map->height, expected.height) << expected.name;
        EXPECT_EQ(map->channels, expected.channels) << expected.name;
    }
}

}  // namespace
}  // namespace talvek::test
