// Rebuilding a mesh from a grid.
#include "weathering/grid_mesh.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace talvek::test {
namespace {

using Indices = std::vector<std::int32_t>;

/// Cell (x, y) in (x + 1, y + 1, 0).
Grid flatGrid(std::int32_t width, std::int32_t height) {
    Grid grid = makeImage(width, height, 3);
    for (std::int32_t y = 0; y < height; ++y) {
        for (std::int32_t x = 0; x < width; ++x) {
            grid.pixel(x, y)[0] = static_cast<float>(x + 1);
            grid.pixel(x, y)[1] = static_cast<float>(y + 1);
        }
    }
    return grid;
}

void clearCell(Grid& grid, std::int32_t x, std::int32_t y) {
    std::fill_n(grid.pixel(x, y), 3, 0.0F);
}

Indices facesOf(const Object3D& mesh) {
    return {mesh.faceSpan().begin(), mesh.faceSpan().end()};
}

TEST(GridMesh, IsNothingWithoutAGridOfThreeChannels) {
    EXPECT_EQ(gridToMesh(nullptr, true), nullptr);
    for (const std::int32_t channels : {0, 1, 2, 4}) {
        const Grid grid = makeImage(3, 3, channels);
        EXPECT_EQ(gridToMesh(&grid, true), nullptr) << channels;
    }
}

TEST(GridMesh, NumbersTheCellsColumnByColumn) {
    Grid grid = flatGrid(3, 4);
    clearCell(grid, 1, 2);
    const auto mesh = gridToMesh(&grid, true);
    ASSERT_EQ(mesh->numVertices, 11);
    ASSERT_EQ(mesh->numTexels, 11);
    std::size_t vertex = 0;
    for (std::int32_t x = 0; x < 3; ++x) {
        for (std::int32_t y = 0; y < 4; ++y) {
            if (x == 1 && y == 2) {
                continue;
            }
            EXPECT_EQ(mesh->vertices[3 * vertex], static_cast<float>(x + 1));
            EXPECT_EQ(mesh->vertices[3 * vertex + 1], static_cast<float>(y + 1));
            EXPECT_EQ(mesh->texels[2 * vertex], static_cast<float>(x / 3.0));
            EXPECT_EQ(mesh->texels[2 * vertex + 1], static_cast<float>(y / 4.0));
            ++vertex;
        }
    }
}

TEST(GridMesh, LaysEightTrianglesAroundTheMiddle) {
    const Grid grid = flatGrid(3, 3);
    const auto mesh = gridToMesh(&grid, true);
    // Numbered 0 1 2 down the first column: NW W SW, N M S, NE E SE.
    EXPECT_EQ(facesOf(*mesh), (Indices{4, 3, 6, 4, 6, 7, 4, 7, 5, 8, 5, 7, 4, 5, 2, 4, 2, 1, 4, 1, 3, 0, 3, 1}));
    EXPECT_EQ(mesh->numFaces, 8);
    EXPECT_NE(mesh->texelIndex.get(), mesh->vertexIndex.get());
    EXPECT_EQ(Indices(mesh->texelIndex.get(), mesh->texelIndex.get() + 24), facesOf(*mesh));
}

TEST(GridMesh, TakesNoMoreMemoryThanItsCountsSay) {
    Grid grid = flatGrid(5, 5);
    clearCell(grid, 1, 1);
    const auto mesh = gridToMesh(&grid, true);
    EXPECT_EQ(mesh->vertices.get_deleter().room, 3 * 24 * sizeof(float));
    EXPECT_EQ(mesh->texels.get_deleter().room, 2 * 24 * sizeof(float));
    EXPECT_EQ(mesh->vertexIndex.get_deleter().room, mesh->faceSpan().size_bytes());
    EXPECT_EQ(mesh->texelIndex.get_deleter().room, mesh->faceSpan().size_bytes());
}

TEST(GridMesh, LeavesOutTrianglesWithAnEmptyCell) {
    Grid corner = flatGrid(3, 3);
    clearCell(corner, 0, 0);
    EXPECT_EQ(gridToMesh(&corner, true)->numFaces, 7);
    Grid edge = flatGrid(3, 3);
    clearCell(edge, 2, 1);
    EXPECT_EQ(gridToMesh(&edge, true)->numFaces, 5);
    Grid middle = flatGrid(3, 3);
    clearCell(middle, 1, 1);
    // Two corners do without the middle.
    EXPECT_EQ(facesOf(*gridToMesh(&middle, true)), (Indices{7, 4, 6, 0, 3, 1}));
}

TEST(GridMesh, GoesFromBlockToBlockColumnByColumn) {
    const Grid grid = flatGrid(5, 7);
    const auto mesh = gridToMesh(&grid, true);
    ASSERT_EQ(mesh->numFaces, 2 * 3 * 8);
    const std::vector<std::int32_t> middles = {1 * 7 + 1, 1 * 7 + 3, 1 * 7 + 5, 3 * 7 + 1, 3 * 7 + 3, 3 * 7 + 5};
    for (std::size_t block = 0; block < middles.size(); ++block) {
        EXPECT_EQ(mesh->vertexIndex[24 * block], middles[block]);
    }
}

TEST(GridMesh, StopsShortOfAnEvenFarEdge) {
    const Grid grid = flatGrid(6, 4);
    EXPECT_EQ(gridToMesh(&grid, true)->numFaces, 2 * 8);
    const Grid thin = flatGrid(2, 9);
    EXPECT_EQ(gridToMesh(&thin, true)->numFaces, 0);
}

TEST(GridMesh, OfAnEmptyGridHasNoVertices) {
    const Grid grid = makeImage(9, 9, 3);
    const auto mesh = gridToMesh(&grid, true);
    EXPECT_EQ(mesh->numVertices, 0);
    EXPECT_EQ(mesh->numFaces, 0);
    EXPECT_NE(mesh->vertexNormals, nullptr);
}

TEST(GridMesh, TakesACellInTheOriginForEmpty) {
    Grid grid = flatGrid(3, 3);
    grid.pixel(1, 0)[0] = -0.0F;
    grid.pixel(1, 0)[1] = 0;
    EXPECT_EQ(gridToMesh(&grid, true)->numVertices, 8);
    grid.pixel(1, 0)[2] = std::nanf("");
    EXPECT_EQ(gridToMesh(&grid, true)->numVertices, 9);
}

TEST(GridMesh, HasNormals) {
    const Grid grid = flatGrid(3, 3);
    const auto mesh = gridToMesh(&grid, true);
    for (std::size_t i = 0; i < 9; ++i) {
        EXPECT_EQ(std::fabs(mesh->vertexNormals[3 * i + 2]), 1);
    }
}

TEST(GridMesh, IsTheSameWithoutTheFlag) {
    const Grid grid = flatGrid(5, 5);
    EXPECT_EQ(facesOf(*gridToMesh(&grid, false)), facesOf(*gridToMesh(&grid, true)));
}

}  // namespace
}  // namespace talvek::test
