// Moving each vertex by the mineral under it.
#include "weathering/mineral_offsets.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "mesh/texture.h"
#include "support/meshes.h"

namespace talvek::test {
namespace {

MineralMap makeMap(std::int32_t width, std::int32_t height, const std::vector<std::vector<float>>& pixels) {
    MineralMap map = makeImage(width, height, static_cast<std::int32_t>(pixels[0].size()));
    float* out = map.data.get();
    for (const std::vector<float>& pixel : pixels) {
        out = std::copy(pixel.begin(), pixel.end(), out);
    }
    return map;
}

const std::vector<float> kWhitePixel = {255, 255, 255};
const std::vector<float> kGreyPixel = {128, 128, 128};
const std::vector<float> kRedPixel = {0, 0, 255};
const std::vector<float> kUnknownPixel = {1, 2, 3};

/// A row of triangles over separate vertices in the plane z = 0, corner i at the texel i, whose coordinates are given.
std::unique_ptr<Object3D> makeTexturedCorners(const std::vector<float>& texels) {
    std::vector<float> vertices;
    std::vector<std::int32_t> corners;
    for (std::int32_t i = 0; i < static_cast<std::int32_t>(texels.size() / 2); ++i) {
        const std::int32_t triangle = i / 3;
        vertices.insert(vertices.end(), {static_cast<float>(2 * triangle + (i % 3 == 1 ? 1 : 0)),
                                         static_cast<float>(i % 3 == 2 ? 1 : 0), 0});
        corners.push_back(i);
    }
    auto mesh = makeMesh(vertices, corners);
    mesh->numTexels = mesh->numVertices;
    mesh->texels = copyArray(texels.data(), static_cast<std::int64_t>(texels.size()));
    mesh->texelIndex = copyArray(corners.data(), static_cast<std::int64_t>(corners.size()));
    mesh->updateNormals(true);
    return mesh;
}

std::vector<float> heights(const Object3D& mesh) {
    std::vector<float> z;
    for (std::size_t i = 2; i < mesh.vertexSpan().size(); i += 3) {
        z.push_back(mesh.vertices[i]);
    }
    return z;
}

TEST(MineralOffsets, ScaleTheMoveByTheMineral) {
    const auto mesh = makeTexturedCorners({0.1F, 0.5F, 0.4F, 0.5F, 0.6F, 0.5F});
    const MineralMap map = makeMap(4, 1, {kWhitePixel, kRedPixel, kGreyPixel, kUnknownPixel});
    applyMineralOffsets(*mesh, map, 0.5F);
    EXPECT_EQ(heights(*mesh), (std::vector<float>{0.5F, 0.5F * 0.94F, 0}));
}

TEST(MineralOffsets, CountRowsFromTheFirstOfTheMap) {
    const auto mesh = makeTexturedCorners({0.5F, 0, 0.5F, 0.49F, 0.5F, 0.5F});
    applyMineralOffsets(*mesh, makeMap(1, 2, {kWhitePixel, kGreyPixel}), 1);
    EXPECT_EQ(heights(*mesh), (std::vector<float>{1, 1, 0}));
}

TEST(MineralOffsets, KeepThePixelOfTheVertexBeforeOutsideTheMap) {
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    const auto mesh = makeTexturedCorners({
        1.5F,  0.5F, 0.9F,  0.5F,   0.2F,      -0.01F,        // before any look-up; grey; still grey
        0.2F,  0.5F, 1,     0.5F,   kInfinity, 0.5F,          // white; still white twice
        0.9F,  0.5F, 0.2F,  1,      0.2F,      -kInfinity,    // grey; still grey twice
        -0.0F, 0.5F, 1e30F, -1e30F, 0.5F,      std::nanf("")  // white; still white twice
    });
    applyMineralOffsets(*mesh, makeMap(2, 1, {kWhitePixel, kGreyPixel}), 1);
    EXPECT_EQ(heights(*mesh), (std::vector<float>{0, 0, 0, 1, 1, 1, 0, 0, 0, 1, 1, 1}));
}

TEST(MineralOffsets, TakeTheTexelOfTheLastCorner) {
    // Vertex 0 is named three times: white, grey, white.
    const auto mesh = makeMesh({0, 0, 0, 1, 0, 0, 0, 1, 0}, {0, 1, 2, 0, 1, 2, 0, 1, 2});
    const std::vector<float> texels = {0.2F, 0.5F, 0.8F, 0.5F};
    mesh->numTexels = 2;
    mesh->texels = copyArray(texels.data(), 4);
    const std::vector<std::int32_t> corners = {0, 0, 1, 1, 0, 1, 0, 1, 0};
    mesh->texelIndex = copyArray(corners.data(), 9);
    mesh->updateNormals(true);
    applyMineralOffsets(*mesh, makeMap(2, 1, {kWhitePixel, kGreyPixel}), 1);
    EXPECT_EQ(heights(*mesh), (std::vector<float>{1, 0, 1}));
}

TEST(MineralOffsets, TakeTexelZeroForAVertexWithoutFaces) {
    const auto mesh = makeTexturedCorners({0.2F, 0.5F, 0.8F, 0.5F, 0.8F, 0.5F, 0.8F, 0.5F, 0.8F, 0.5F, 0.8F, 0.5F});
    mesh->numFaces = 1;
    mesh->updateNormals(true);
    mesh->vertexNormals[3 * 4 + 2] = 1;
    applyMineralOffsets(*mesh, makeMap(2, 1, {kWhitePixel, kGreyPixel}), 1);
    EXPECT_EQ(heights(*mesh), (std::vector<float>{1, 0, 0, 0, 1, 0}));
}

TEST(MineralOffsets, MissWhereACornerNamesNoTexel) {
    const auto mesh = makeTexturedCorners({0.2F, 0.5F, 0.8F, 0.5F, 0.8F, 0.5F});
    mesh->texelIndex[1] = -1;
    mesh->texelIndex[2] = 3;
    applyMineralOffsets(*mesh, makeMap(2, 1, {kWhitePixel, kGreyPixel}), 1);
    EXPECT_EQ(heights(*mesh), (std::vector<float>{1, 1, 1}));
}

TEST(MineralOffsets, MultiplyEvenByZero) {
    const auto mesh = makeTexturedCorners({0.2F, 0.5F, 0.2F, 0.5F, 0.2F, 0.5F});
    applyMineralOffsets(*mesh, makeMap(1, 1, {kGreyPixel}), std::numeric_limits<float>::infinity());
    EXPECT_TRUE(std::isnan(mesh->vertices[2]));
}

TEST(MineralOffsets, AreNothingUnderMapsOfOtherChannels) {
    for (const std::size_t channels : {1U, 2U, 4U}) {
        const auto mesh = makeTexturedCorners({0.2F, 0.5F, 0.2F, 0.5F, 0.2F, 0.5F});
        applyMineralOffsets(*mesh, makeMap(1, 1, {std::vector<float>(channels, 255.0F)}), 1);
        EXPECT_EQ(heights(*mesh), (std::vector<float>{0, 0, 0})) << channels;
    }
}

TEST(MineralOffsets, AreNothingUnderAMapWithoutPixels) {
    const auto mesh = makeTexturedCorners({0.2F, 0.5F, 0, 0, 0.2F, 0.5F});
    MineralMap map = makeImage(0, 0, 3);
    applyMineralOffsets(*mesh, map, 1);
    EXPECT_EQ(heights(*mesh), (std::vector<float>{0, 0, 0}));
}

TEST(MineralOffsets, FindTheColumnInSinglePrecision) {
    // 460 * (float)(n / 460) is n for most n and less than n for some; both are kept.
    int lost = 0;
    for (int n = 0; n < 460; ++n) {
        const float u = static_cast<float>(n / 460.0);
        const auto mesh = makeTexturedCorners({u, 0, u, 0, u, 0});
        std::vector<std::vector<float>> pixels(460, kGreyPixel);
        pixels[static_cast<std::size_t>(n)] = kWhitePixel;
        applyMineralOffsets(*mesh, makeMap(460, 1, pixels), 1);
        const bool isFound = std::floor(460.0F * u) == static_cast<float>(n);
        EXPECT_EQ(mesh->vertices[2], isFound ? 1.0F : 0.0F) << n;
        lost += isFound ? 0 : 1;
    }
    EXPECT_GT(lost, 0);
    EXPECT_LT(lost, 100);
}

TEST(MineralOffsets, NeedTexelsAndTheirIndex) {
    const auto mesh = makeTexturedCorners({0.1F, 0.5F, 0.4F, 0.5F, 0.6F, 0.5F});
    EXPECT_TRUE(hasNamedTexels(*mesh));
    mesh->numTexels = 0;
    EXPECT_FALSE(hasNamedTexels(*mesh));
    mesh->numTexels = 3;
    mesh->texelIndex.reset();
    EXPECT_FALSE(hasNamedTexels(*mesh));
    mesh->texels.reset();
    EXPECT_FALSE(hasNamedTexels(*mesh));
}

/// What moves a vertex is the class that is told of it: the first corner lies on white, class 20, the second on grey,
/// class 19, the third outside the map, where the pixel before holds.
TEST(MineralsOfVertices, AreThoseThatMoveThem) {
    const MineralMap map = makeMap(2, 1, {kWhitePixel, kGreyPixel});
    const auto mesh = makeTexturedCorners({0.25F, 0.5F, 0.75F, 0.5F, 7, 7});
    EXPECT_EQ(mineralsOfVertices(*mesh, map), (std::vector<std::int32_t>{20, 19, 19}));
    const MineralMap numbers = makeMap(1, 1, {{20}});
    EXPECT_EQ(mineralsOfVertices(*mesh, numbers), (std::vector<std::int32_t>{0, 0, 0}));
}

}  // namespace
}  // namespace talvek::test
