// Drawing a mesh into the grid over its texture space.
#include "weathering/rasterise.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <vector>

#include "support/meshes.h"
#include "support/plain_rasteriser.h"
#include "support/random_numbers.h"
#include "weathering/grid_mesh.h"

namespace talvek::test {
namespace {

/// Triangles whose corners have texels of their own and are all placed in (1, 2, 3), triangle n in (1, 2, 3) * (n + 1).
std::unique_ptr<Object3D> makeTriangles(const std::vector<float>& texels) {
    std::vector<float> vertices;
    std::vector<std::int32_t> corners;
    for (std::size_t i = 0; i < texels.size() / 2; ++i) {
        const auto scale = static_cast<float>(i / 3 + 1);
        vertices.insert(vertices.end(), {scale, 2 * scale, 3 * scale});
        corners.push_back(static_cast<std::int32_t>(i));
    }
    auto mesh = makeMesh(vertices, corners);
    mesh->numTexels = mesh->numVertices;
    mesh->texels = copyArray(texels.data(), static_cast<std::int64_t>(texels.size()));
    mesh->texelIndex = copyArray(corners.data(), static_cast<std::int64_t>(corners.size()));
    return mesh;
}

Grid rasterise(const Object3D& mesh) {
    return std::move(*rasteriseToGrid(mesh, mesh.vertices.get()));
}

int filledCells(const Grid& grid) {
    int filled = 0;
    for (int y = 0; y < kGridSize; ++y) {
        for (int x = 0; x < kGridSize; ++x) {
            filled += isEmptyCell(grid.pixel(x, y)) ? 0 : 1;
        }
    }
    return filled;
}

void expectPlainRaster(const Object3D& mesh, const std::string& where) {
    const Grid grid = rasterise(mesh);
    const std::vector<float> expected = plainRaster(mesh, mesh.vertices.get());
    for (std::size_t i = 0; i < expected.size(); ++i) {
        if (std::isnan(expected[i])) {
            ASSERT_TRUE(std::isnan(grid.data[i])) << where << ", value " << i;
        } else {
            ASSERT_EQ(std::bit_cast<std::uint32_t>(grid.data[i]), std::bit_cast<std::uint32_t>(expected[i]))
                << where << ", value " << i;
        }
    }
}

TEST(Rasterise, GivesNothingForAnAbsentAttribute) {
    EXPECT_EQ(rasteriseToGrid(*makeCube(1), nullptr), nullptr);
}

TEST(Rasterise, MakesAGridOfAFixedSize) {
    const Grid grid = rasterise(*makeTriangles({}));
    EXPECT_EQ(grid.width, 460);
    EXPECT_EQ(grid.height, 460);
    EXPECT_EQ(grid.channels, 3);
    EXPECT_EQ(filledCells(grid), 0);
}

TEST(Rasterise, TakesCellsByTheirCorner) {
    // A triangle over cells 10 to 20, its edges a little outside their corners.
    const float low = 9.75F / 460;
    const float high = 20.25F / 460;
    const Grid grid = rasterise(*makeTriangles({low, low, high + high, low, low, high + high}));
    EXPECT_FALSE(isEmptyCell(grid.pixel(10, 10)));
    EXPECT_TRUE(isEmptyCell(grid.pixel(9, 10)));
    EXPECT_TRUE(isEmptyCell(grid.pixel(10, 9)));
    EXPECT_FALSE(isEmptyCell(grid.pixel(20, 20)));
    EXPECT_NEAR(static_cast<double>(grid.pixel(15, 12)[0]), 1, 1e-5);
    EXPECT_NEAR(static_cast<double>(grid.pixel(15, 12)[1]), 2, 1e-5);
    EXPECT_NEAR(static_cast<double>(grid.pixel(15, 12)[2]), 3, 1e-5);
}

TEST(Rasterise, InterpolatesBetweenTheCorners) {
    const auto mesh = makeTriangles({0, 0, 0.5F, 0, 0, 0.5F});
    const std::vector<float> values = {1, 0, 5, 3, 0, 5, 1, 4, 5};
    const auto grid = rasteriseToGrid(*mesh, values.data());
    for (int y = 0; y < 200; y += 10) {
        for (int x = 0; x + y < 230; x += 10) {
            const float* cell = grid->pixel(x, y);
            EXPECT_NEAR(static_cast<double>(cell[0]), 1 + 2 * x / 230.0, 1e-4);
            EXPECT_NEAR(static_cast<double>(cell[1]), 4 * y / 230.0, 1e-4);
            EXPECT_NEAR(static_cast<double>(cell[2]), 5, 1e-4);
        }
    }
}

TEST(Rasterise, DrawsNothingClockwise) {
    EXPECT_EQ(filledCells(rasterise(*makeTriangles({0.1F, 0.1F, 0.1F, 0.5F, 0.5F, 0.1F}))), 0);
    EXPECT_GT(filledCells(rasterise(*makeTriangles({0.1F, 0.1F, 0.5F, 0.1F, 0.1F, 0.5F}))), 0);
}

TEST(Rasterise, LetsTheLastFaceWin) {
    const std::vector<float> twice = {0.1F, 0.1F, 0.5F, 0.1F, 0.1F, 0.5F, 0.1F, 0.1F, 0.5F, 0.1F, 0.1F, 0.5F};
    const Grid grid = rasterise(*makeTriangles(twice));
    EXPECT_NEAR(static_cast<double>(grid.pixel(60, 60)[0]), 2, 1e-5);
}

TEST(Rasterise, DrawsNoMoreFacesThanThereAre) {
    const auto mesh = makeTriangles({0.1F, 0.1F, 0.2F, 0.1F, 0.1F, 0.2F, 0.5F, 0.5F, 0.6F, 0.5F, 0.5F, 0.6F});
    mesh->numFaces = 1;
    const Grid grid = rasterise(*mesh);
    EXPECT_FALSE(isEmptyCell(grid.pixel(60, 60)));
    EXPECT_TRUE(isEmptyCell(grid.pixel(240, 240)));
}

TEST(Rasterise, StoresNothingAtTheFarEdges) {
    // The unit square: column and row 460 do not exist.
    const Grid grid = rasterise(*makeTriangles({0, 0, 1, 0, 1, 1, 0, 0, 1, 1, 0, 1}));
    EXPECT_EQ(filledCells(grid), 460 * 460);
}

// The blocks of 3 x 3 cells that a mesh is rebuilt from do not reach the last column and row.
TEST(Rasterise, LosesTheFarEdgesOfARebuiltMeshOnce) {
    Grid grid = rasterise(*makeTriangles({0, 0, 1, 0, 1, 1, 0, 0, 1, 1, 0, 1}));
    for (int round = 0; round < 2; ++round) {
        grid = rasterise(*gridToMesh(&grid, true));
        EXPECT_EQ(filledCells(grid), 459 * 459);
    }
}

TEST(Rasterise, TakesANegativeZeroForZero) {
    expectPlainRaster(*makeTriangles({0.1F, -0.0F, 0.9F, 0, 0.5F, 0.8F}), "below");
    expectPlainRaster(*makeTriangles({0.1F, 0, 0.9F, -0.0F, 0.5F, 0.8F}), "below");
    expectPlainRaster(*makeTriangles({-0.0F, 0.9F, 0, 0.1F, 0.8F, 0.5F}), "aside");
    EXPECT_GT(filledCells(rasterise(*makeTriangles({0.1F, -0.0F, 0.9F, 0, 0.5F, 0.8F}))), 1000);
}

TEST(Rasterise, DrawsNothingWithoutExtent) {
    EXPECT_EQ(filledCells(rasterise(*makeTriangles({0.1F, 0.1F, 0.3F, 0.3F, 0.5F, 0.5F}))), 0);
    EXPECT_EQ(filledCells(rasterise(*makeTriangles({0, 0, 0, 0, 0, 0}))), 0);
    EXPECT_EQ(filledCells(rasterise(*makeTriangles({0, 0, 0.5F, 0, 0, 0}))), 0);
}

TEST(Rasterise, DrawsNothingThatIsNotFinite) {
    for (const float value : {std::numeric_limits<float>::infinity(), -std::numeric_limits<float>::infinity(),
                              std::numeric_limits<float>::quiet_NaN()}) {
        for (std::size_t place = 0; place < 6; ++place) {
            std::vector<float> texels = {0.1F, 0.1F, 0.5F, 0.1F, 0.1F, 0.5F};
            texels[place] = value;
            EXPECT_EQ(filledCells(rasterise(*makeTriangles(texels))), 0) << place;
        }
    }
}

TEST(Rasterise, DrawsNothingWhoseTexelDoesNotExist) {
    for (const std::int32_t index : {-1, 3, std::numeric_limits<std::int32_t>::max()}) {
        for (std::size_t corner = 0; corner < 3; ++corner) {
            const auto mesh = makeTriangles({0.1F, 0.1F, 0.5F, 0.1F, 0.1F, 0.5F});
            mesh->texelIndex[corner] = index;
            EXPECT_EQ(filledCells(rasterise(*mesh)), 0) << index << " at " << corner;
        }
    }
    const auto withoutTexels = makeTriangles({0.1F, 0.1F, 0.5F, 0.1F, 0.1F, 0.5F});
    withoutTexels->texels.reset();
    EXPECT_EQ(filledCells(rasterise(*withoutTexels)), 0);
}

TEST(Rasterise, TakesTheVertexIndexWithoutATexelIndex) {
    const auto mesh = makeTriangles({0.1F, 0.1F, 0.5F, 0.1F, 0.1F, 0.5F});
    const int filled = filledCells(rasterise(*mesh));
    mesh->texelIndex.reset();
    EXPECT_EQ(filledCells(rasterise(*mesh)), filled);
}

TEST(Rasterise, ReachesTheGridFromFarAway) {
    // So large that every cell lies inside.
    const Grid grid = rasterise(*makeTriangles({-1000, -1000, 3000, -1000, -1000, 3000}));
    EXPECT_EQ(filledCells(grid), 460 * 460);
}

// The products of such coordinates overflow or lose everything but their sign; what remains counts.
TEST(Rasterise, AgreesWithThePlainFormFarAway) {
    for (const float distance : {30.0F, 2e4F, 1e5F, 3e5F, 2e9F, 1e18F, 1e30F, std::numeric_limits<float>::max()}) {
        expectPlainRaster(*makeTriangles({-distance, -distance, distance, -distance, 0, distance}), "around");
        expectPlainRaster(*makeTriangles({-distance, -distance, 0, distance, distance, -distance}), "clockwise");
        expectPlainRaster(*makeTriangles({0.3F, 0.2F, distance, 0.4F, -distance, 0.9F}), "aside");
        expectPlainRaster(*makeTriangles({0.3F, -distance, 0.4F, 0.5F, 0.2F, distance}), "above");
        expectPlainRaster(*makeTriangles({-distance, -distance, distance, distance, 0.5F, 0.6F}), "diagonal");
    }
}

TEST(Rasterise, PassesOverTenThousandFacesOutsideTheGrid) {
    std::vector<float> texels;
    for (int i = 0; i < 10000; ++i) {
        texels.insert(texels.end(), {2, 2, 1e6F, 2, 2, 1e6F});
    }
    EXPECT_EQ(filledCells(rasterise(*makeTriangles(texels))), 0);
}

TEST(Rasterise, AgreesWithThePlainFormOnRandomTriangles) {
    RandomNumbers random;
    for (int round = 0; round < 12; ++round) {
        std::vector<float> texels(6 * 20);
        for (float& coordinate : texels) {
            // Around the grid, exactly on its cells, and small triangles inside.
            coordinate = round % 3 == 0   ? random.coordinate(1.5F)
                         : round % 3 == 1 ? static_cast<float>(static_cast<int>(random.below(500)) - 20) / 460.0F
                                          : 0.5F + random.coordinate(0.02F);
        }
        const auto mesh = makeTriangles(texels);
        for (float& value : mesh->vertexSpan()) {
            value = random.coordinate(100);
        }
        expectPlainRaster(*mesh, "round " + std::to_string(round));
    }
}

/// Two corners anywhere around the grid and one so near to the line between them that rounding decides.
std::vector<float> slivers(RandomNumbers& random, int count) {
    std::vector<float> texels;
    for (int i = 0; i < count; ++i) {
        const float u = random.coordinate(1.5F);
        const float v = random.coordinate(1.5F);
        const float du = random.coordinate(2);
        const float dv = random.coordinate(2);
        const float middle = random.coordinate(1);
        const float off = std::ldexp(random.coordinate(1), -static_cast<int>(random.below(26)));
        texels.insert(texels.end(), {u, v, u + du, v + dv, u + middle * du - off * dv, v + middle * dv + off * du});
    }
    return texels;
}

TEST(Rasterise, AgreesWithThePlainFormOnSlivers) {
    RandomNumbers random;
    for (int round = 0; round < 12; ++round) {
        expectPlainRaster(*makeTriangles(slivers(random, 25)), "round " + std::to_string(round));
    }
}

/// Corners on a row of the grid, or a few of the smallest steps beside it.
std::vector<float> slightlyTilted(RandomNumbers& random, int count) {
    std::vector<float> texels;
    for (int i = 0; i < count; ++i) {
        const float row = static_cast<float>(random.below(460)) / 460.0F;
        for (int corner = 0; corner < 3; ++corner) {
            const float steps = static_cast<float>(random.below(9)) - 4;
            texels.insert(texels.end(), {random.coordinate(3), row + std::ldexp(steps, -24)});
        }
    }
    return texels;
}

TEST(Rasterise, AgreesWithThePlainFormOnSliversAlongRows) {
    RandomNumbers random;
    for (int round = 0; round < 12; ++round) {
        expectPlainRaster(*makeTriangles(slightlyTilted(random, 200)), "round " + std::to_string(round));
    }
}

TEST(Rasterise, AgreesWithThePlainFormOnAWholeSurface) {
    const auto plane = makePlane(40);
    layTexture(*plane, 1 / 40.0F, 1 / 40.0F);
    expectPlainRaster(*plane, "plane");
}

}  // namespace
}  // namespace talvek::test
