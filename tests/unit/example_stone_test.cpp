// The example stone is judged by what is written: the tests read the OBJ text and the bitmap's bytes back.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "example_stone/box_sides.h"
#include "example_stone/carved_block.h"
#include "example_stone/mineral_map.h"
#include "example_stone/stone_files.h"

namespace talvek::example {
namespace {

constexpr double kBlockVolume = kBlockSize.x * kBlockSize.y * kBlockSize.z;
constexpr std::size_t kBitmapHeaderSize = 54;
constexpr std::size_t kGroundmassClasses = 2;

Vec3 minus(const Vec3& a, const Vec3& b) {
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}

Vec3 cross(const Vec3& a, const Vec3& b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

double dot(const Vec3& a, const Vec3& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

/// Takes the numbers off the front of a line, whatever stands between them.
class LineNumbers {
  public:
    explicit LineNumbers(std::string_view line) : rest_(line) {}

    template <typename Number>
    Number next() {
        rest_.remove_prefix(std::min(rest_.find_first_of("-0123456789"), rest_.size()));
        Number number{};
        const auto result = std::from_chars(rest_.data(), rest_.data() + rest_.size(), number);
        EXPECT_EQ(result.ec, std::errc()) << rest_;
        rest_.remove_prefix(static_cast<std::size_t>(result.ptr - rest_.data()));
        return number;
    }

  private:
    std::string_view rest_;
};

void readLine(std::string_view line, StoneMesh& mesh) {
    LineNumbers numbers(line);
    if (line.starts_with("v ")) {
        const auto x = numbers.next<double>();
        const auto y = numbers.next<double>();
        mesh.positions.push_back({x, y, numbers.next<double>()});
    } else if (line.starts_with("vt ")) {
        const auto u = numbers.next<double>();
        mesh.texels.push_back({u, numbers.next<double>()});
    } else if (line.starts_with("f ")) {
        std::array<Corner, 3> face;
        for (Corner& corner : face) {
            corner.position = numbers.next<std::uint32_t>() - 1;
            corner.texel = numbers.next<std::uint32_t>() - 1;
        }
        mesh.faces.push_back(face);
    } else {
        EXPECT_TRUE(line.starts_with("#")) << line;
    }
}

StoneMesh readObjText(std::string_view text) {
    StoneMesh mesh;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        if (end == std::string_view::npos) {
            ADD_FAILURE() << "the last line is not ended";
            break;
        }
        readLine(text.substr(0, end), mesh);
        text.remove_prefix(end + 1);
    }
    return mesh;
}

std::uint64_t checksum(std::string_view bytes) {
    std::uint64_t sum = 0xCBF29CE484222325U;
    for (const char byte : bytes) {
        sum = (sum ^ static_cast<unsigned char>(byte)) * 0x100000001B3U;
    }
    return sum;
}

class ExampleStone : public ::testing::Test {
  protected:
    static const std::string& text() {
        static const std::string kText = objText(makeCarvedBlock());
        return kText;
    }

    static const StoneMesh& mesh() {
        static const StoneMesh kMesh = readObjText(text());
        return kMesh;
    }

    static const MineralMap& map() {
        static const MineralMap kMap = makeMineralMap();
        return kMap;
    }

    static const std::string& bitmap() {
        static const std::string kBitmap = bitmapBytes(map());
        return kBitmap;
    }

    static const Vec3& position(const Corner& corner) { return mesh().positions[corner.position]; }
    static const Texel& texel(const Corner& corner) { return mesh().texels[corner.texel]; }

    /// Normal of a face, as long as twice its area.
    static Vec3 faceNormal(const std::array<Corner, 3>& face) {
        return cross(minus(position(face[1]), position(face[0])), minus(position(face[2]), position(face[0])));
    }

    static const BoxSide& sideOfFace(const std::array<Corner, 3>& face) {
        return sideAtAtlasPoint(texel(face[0]).u * kAtlasWidth, texel(face[0]).v * kAtlasHeight);
    }

    static std::uint32_t headerField(std::size_t offset, std::size_t size) {
        std::uint32_t value = 0;
        for (std::size_t k = size; k > 0; --k) {
            value = value << 8U | static_cast<unsigned char>(bitmap()[offset + k - 1]);
        }
        return value;
    }

    static std::size_t bytesPerRow() { return (static_cast<std::size_t>(map().width) * 3 + 3) / 4 * 4; }

    static std::array<int, 3> colorInBitmap(std::size_t column, std::size_t row) {
        const std::size_t at = kBitmapHeaderSize + row * bytesPerRow() + column * 3;
        const auto byte = [at](std::size_t k) {
            return static_cast<int>(static_cast<unsigned char>(bitmap()[at + k]));
        };
        return {byte(2), byte(1), byte(0)};
    }

    static std::array<int, 3> colorUnder(const Texel& at) {
        return colorInBitmap(static_cast<std::size_t>(std::floor(map().width * at.u)),
                             static_cast<std::size_t>(std::floor(map().height * at.v)));
    }

    /// Smallest and greatest depth of the dressed side's points that lay between these distances from its edges before
    /// the carving.
    static std::pair<double, double> depthsOfDressedSide(double fromEdge, double toEdge) {
        const BoxSide& side = boxSide(Side::kRight);
        std::pair<double, double> depths{kBlockVolume, 0.0};
        for (const auto& face : mesh().faces) {
            const SidePoint at{texel(face[0]).u * kAtlasWidth - side.atlasLeft,
                               texel(face[0]).v * kAtlasHeight - side.atlasBottom};
            const double edge = std::min({at.u, side.uLength - at.u, at.v, side.vLength - at.v});
            const double depth = depthBehindSide(side, position(face[0]));
            if (sideOfFace(face).side == side.side && edge >= fromEdge && edge <= toEdge) {
                depths = {std::min(depths.first, depth), std::max(depths.second, depth)};
            }
        }
        return depths;
    }

    static std::map<int, std::size_t> pixelsPerClass() {
        std::map<int, std::size_t> pixels;
        for (const std::uint8_t mineral : map().classes) {
            ++pixels[mineral];
        }
        return pixels;
    }
};

TEST_F(ExampleStone, HasAboutFiftyThousandFaces) {
    EXPECT_GE(mesh().faces.size(), 45000U);
    EXPECT_LE(mesh().faces.size(), 55000U);
}

TEST_F(ExampleStone, RefersOnlyToLinesThatExist) {
    for (const auto& face : mesh().faces) {
        for (const Corner& corner : face) {
            ASSERT_LT(corner.position, mesh().positions.size());
            ASSERT_LT(corner.texel, mesh().texels.size());
        }
    }
}

TEST_F(ExampleStone, UsesEveryPositionAndEveryTexel) {
    std::vector<bool> usedPositions(mesh().positions.size());
    std::vector<bool> usedTexels(mesh().texels.size());
    for (const auto& face : mesh().faces) {
        for (const Corner& corner : face) {
            usedPositions[corner.position] = true;
            usedTexels[corner.texel] = true;
        }
    }
    EXPECT_EQ(std::count(usedPositions.begin(), usedPositions.end(), false), 0);
    EXPECT_EQ(std::count(usedTexels.begin(), usedTexels.end(), false), 0);
}

TEST_F(ExampleStone, SurfaceIsClosedAndManifold) {
    std::set<std::pair<std::uint32_t, std::uint32_t>> edges;
    for (const auto& face : mesh().faces) {
        for (std::size_t k = 0; k < face.size(); ++k) {
            const auto edge = std::make_pair(face[k].position, face[(k + 1) % 3].position);
            ASSERT_TRUE(edges.insert(edge).second) << "an edge is used twice in the same direction";
        }
    }
    for (const auto& [from, to] : edges) {
        ASSERT_TRUE(edges.contains({to, from})) << "the edge from " << from << " to " << to << " is open";
    }
}

TEST_F(ExampleStone, IsOnePieceWithoutHandles) {
    // Euler's formula for a sphere; with every edge between two faces there are 3/2 as many edges as faces.
    EXPECT_EQ(mesh().positions.size() * 2, mesh().faces.size() + 4);
}

TEST_F(ExampleStone, NoTwoPositionsAreTheSame) {
    std::set<std::array<double, 3>> positions;
    for (const Vec3& position : mesh().positions) {
        positions.insert({position.x, position.y, position.z});
    }
    EXPECT_EQ(positions.size(), mesh().positions.size());
}

TEST_F(ExampleStone, NoFaceIsDegenerate) {
    constexpr double kSmallestArea = 0.01;
    for (const auto& face : mesh().faces) {
        const Vec3 normal = faceNormal(face);
        ASSERT_GT(std::sqrt(dot(normal, normal)) / 2.0, kSmallestArea);
    }
}

TEST_F(ExampleStone, VolumeIsThatOfTheBlockLessTheCarving) {
    double volume = 0.0;
    for (const auto& face : mesh().faces) {
        volume += dot(position(face[0]), cross(position(face[1]), position(face[2]))) / 6.0;
    }
    EXPECT_GT(volume, 0.85 * kBlockVolume);
    EXPECT_LT(volume, 0.97 * kBlockVolume);
}

TEST_F(ExampleStone, EveryFaceLooksOutOfItsSide) {
    for (const auto& face : mesh().faces) {
        ASSERT_GT(along(sideOfFace(face).outward, faceNormal(face)), 0.0);
    }
}

TEST_F(ExampleStone, LiesInsideTheUncarvedBlock) {
    for (const Vec3& position : mesh().positions) {
        for (const BoxSide& side : kBoxSides) {
            ASSERT_GE(depthBehindSide(side, position), 0.0);
        }
    }
}

TEST_F(ExampleStone, FillsMostOfEveryDimension) {
    for (const BoxSide& side : kBoxSides) {
        double nearest = kBlockVolume;
        for (const Vec3& position : mesh().positions) {
            nearest = std::min(nearest, depthBehindSide(side, position));
        }
        EXPECT_LT(nearest, 5.0);
    }
}

TEST_F(ExampleStone, DressedSideHasGroovesWithinADraftedMargin) {
    const auto [shallowestGroove, deepestGroove] = depthsOfDressedSide(40.0, 75.0);
    EXPECT_GT(deepestGroove - shallowestGroove, 1.0);
    EXPECT_LT(deepestGroove - shallowestGroove, 2.5);
    const auto [shallowestMargin, deepestMargin] = depthsOfDressedSide(9.5, 12.5);
    EXPECT_LT(deepestMargin - shallowestMargin, 0.5);
}

TEST_F(ExampleStone, TexelsLieFromZeroToBelowOne) {
    for (const Texel& texel : mesh().texels) {
        ASSERT_GE(texel.u, 0.0);
        ASSERT_LT(texel.u, 1.0);
        ASSERT_GE(texel.v, 0.0);
        ASSERT_LT(texel.v, 1.0);
    }
}

TEST_F(ExampleStone, TexelTrianglesRunCounterClockwise) {
    for (const auto& face : mesh().faces) {
        const Texel& a = texel(face[0]);
        const Texel& b = texel(face[1]);
        const Texel& c = texel(face[2]);
        ASSERT_GT((b.u - a.u) * (c.v - a.v) - (c.u - a.u) * (b.v - a.v), 0.0);
    }
}

TEST_F(ExampleStone, EverySideHasItsOwnTileOfTheTexture) {
    std::map<Side, std::size_t> facesPerSide;
    for (const auto& face : mesh().faces) {
        const Side side = sideOfFace(face).side;
        ++facesPerSide[side];
        for (const Corner& corner : face) {
            ASSERT_EQ(sideAtAtlasPoint(texel(corner).u * kAtlasWidth, texel(corner).v * kAtlasHeight).side, side);
        }
    }
    EXPECT_EQ(facesPerSide.size(), kBoxSides.size());
}

TEST_F(ExampleStone, MeshTextIsPlain) {
    EXPECT_EQ(text().find('\r'), std::string::npos);
    EXPECT_EQ(text().find('-'), std::string::npos) << "no number is negative, nor minus zero";
    EXPECT_EQ(text().find("  "), std::string::npos);
    EXPECT_EQ(text().back(), '\n');
}

TEST_F(ExampleStone, MeshBytesAreTheSameOnEveryPlatform) {
    EXPECT_EQ(text().size(), 2984629U);
    EXPECT_EQ(checksum(text()), 480657941085674322U);
}

TEST_F(ExampleStone, MapBytesAreTheSameOnEveryPlatform) {
    EXPECT_EQ(bitmap().size(), 1724010U);
    EXPECT_EQ(checksum(bitmap()), 14563053113653493027U);
}

TEST_F(ExampleStone, BitmapHeaderDescribesTheImage) {
    const std::size_t pixelBytes = bytesPerRow() * static_cast<std::size_t>(map().height);
    EXPECT_EQ(bitmap().substr(0, 2), "BM");
    EXPECT_EQ(headerField(2, 4), kBitmapHeaderSize + pixelBytes);
    EXPECT_EQ(headerField(2, 4), bitmap().size());
    EXPECT_EQ(headerField(10, 4), kBitmapHeaderSize);
    EXPECT_EQ(headerField(14, 4), 40U);
    EXPECT_EQ(headerField(18, 4), static_cast<std::uint32_t>(map().width));
    EXPECT_EQ(headerField(22, 4), static_cast<std::uint32_t>(map().height));
    EXPECT_EQ(headerField(26, 2), 1U);
    EXPECT_EQ(headerField(28, 2), 24U);
    EXPECT_EQ(headerField(30, 4), 0U);
    EXPECT_EQ(headerField(34, 4), pixelBytes);
}

TEST_F(ExampleStone, BitmapRowsArePaddedWithZeros) {
    const std::size_t pixelsEnd = static_cast<std::size_t>(map().width) * 3;
    ASSERT_GT(bytesPerRow(), pixelsEnd);
    for (std::size_t row = 0; row < static_cast<std::size_t>(map().height); ++row) {
        const std::size_t start = kBitmapHeaderSize + row * bytesPerRow();
        ASSERT_EQ(bitmap().substr(start + pixelsEnd, bytesPerRow() - pixelsEnd).find_first_not_of('\0'),
                  std::string::npos);
    }
}

TEST_F(ExampleStone, EveryPixelHasTheColorOfAClass) {
    std::set<std::array<int, 3>> known;
    for (const MapColor& color : kClassColors) {
        known.insert({color.red, color.green, color.blue});
    }
    ASSERT_EQ(known.size(), 20U);
    for (std::size_t row = 0; row < static_cast<std::size_t>(map().height); ++row) {
        for (std::size_t column = 0; column < static_cast<std::size_t>(map().width); ++column) {
            ASSERT_TRUE(known.contains(colorInBitmap(column, row))) << "column " << column << ", row " << row;
        }
    }
}

TEST_F(ExampleStone, MapLooksLikeAStone) {
    const std::map<int, std::size_t> pixels = pixelsPerClass();
    const std::size_t all = map().classes.size();
    EXPECT_GE(pixels.size(), 6U + kGroundmassClasses + 1U);
    EXPECT_GT(pixels.at(20) + pixels.at(10), all / 2) << "the groundmass prevails";
    EXPECT_LT(pixels.at(kVeinClass), all / 10);
    for (const auto& [mineral, count] : pixels) {
        EXPECT_GT(count, all / 200) << "class " << mineral;
    }
}

TEST_F(ExampleStone, ClassesHaveTheirColors) {
    const auto is = [](int mineral, int red, int green, int blue) {
        const MapColor& color = kClassColors[static_cast<std::size_t>(mineral - 1)];
        return color.red == red && color.green == green && color.blue == blue;
    };
    EXPECT_TRUE(is(1, 255, 255, 0));
    EXPECT_TRUE(is(4, 128, 0, 0));
    EXPECT_TRUE(is(10, 192, 192, 255));
    EXPECT_TRUE(is(18, 0, 0, 192));
    EXPECT_TRUE(is(kVeinClass, 128, 128, 128));
    EXPECT_TRUE(is(20, 255, 255, 255));
}

TEST_F(ExampleStone, VeinCrossesTheCarvedFrontAndGoesAroundTheBlock) {
    std::map<Side, std::size_t> veinedFaces;
    for (const auto& face : mesh().faces) {
        const bool isVein = std::all_of(face.begin(), face.end(), [](const Corner& corner) {
            return colorUnder(texel(corner)) == std::array<int, 3>{128, 128, 128};
        });
        veinedFaces[sideOfFace(face).side] += isVein ? 1U : 0U;
    }
    EXPECT_GT(veinedFaces[Side::kFront], 100U);
    EXPECT_GE(std::count_if(veinedFaces.begin(), veinedFaces.end(), [](const auto& side) { return side.second > 0; }),
              4);
}

TEST_F(ExampleStone, MineralsMeetAtTheEdgesOfTheBlock) {
    // Texels of two sides over one position lie at the same place of the stone, save for the rounding to pixels.
    std::map<std::uint32_t, std::set<std::uint32_t>> texelsOfPosition;
    for (const auto& face : mesh().faces) {
        for (const Corner& corner : face) {
            texelsOfPosition[corner.position].insert(corner.texel);
        }
    }
    std::size_t seams = 0;
    std::size_t same = 0;
    for (const auto& [position, texels] : texelsOfPosition) {
        if (texels.size() > 1) {
            ++seams;
            same += colorUnder(mesh().texels[*texels.begin()]) == colorUnder(mesh().texels[*texels.rbegin()]) ? 1U : 0U;
        }
    }
    EXPECT_GT(seams, 500U);
    EXPECT_GT(same * 10, seams * 7);
}

TEST_F(ExampleStone, MakesTheSameStoneAgain) {
    EXPECT_EQ(objText(makeCarvedBlock()), text());
    EXPECT_EQ(bitmapBytes(makeMineralMap()), bitmap());
}

TEST_F(ExampleStone, MapNameReplacesTheLastExtension) {
    EXPECT_EQ(mapFileName("stone.obj"), "stone.bmp");
    EXPECT_EQ(mapFileName("a.dir/stone.v2.OBJ"), "a.dir/stone.v2.bmp");
}

TEST_F(ExampleStone, TakesOnlyObjNames) {
    EXPECT_TRUE(isObjName("stone.obj"));
    EXPECT_TRUE(isObjName("STONE.OBJ"));
    EXPECT_FALSE(isObjName(""));
    EXPECT_FALSE(isObjName(".obj"));
    EXPECT_FALSE(isObjName("stone"));
    EXPECT_FALSE(isObjName("stone.bmp"));
    EXPECT_FALSE(isObjName("stone.obj.txt"));
}

TEST_F(ExampleStone, ReportsAFileThatCannotBeWritten) {
    EXPECT_FALSE(writeFile("no-such-folder/stone.obj", text()));
}

}  // namespace
}  // namespace talvek::example
