// The weathering grid from one epoch to the next: drawn afresh each time, whatever is remembered in between.
#include "weathering/grid_surface.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

#include "support/plain_rasteriser.h"
#include "support/random_numbers.h"
#include "weathering/delta_grid.h"
#include "weathering/grid_mesh.h"

namespace talvek::test {
namespace {

constexpr std::int32_t kSide = 40;

/// A patch of cells at random heights in an empty grid.
Grid makePatch(RandomNumbers& random) {
    Grid grid = makeImage(kGridSize, kGridSize, 3);
    for (std::int32_t y = 0; y < kSide; ++y) {
        for (std::int32_t x = 0; x < kSide; ++x) {
            float* cell = grid.pixel(x, y);
            cell[0] = static_cast<float>(x);
            cell[1] = static_cast<float>(y);
            cell[2] = 5 + random.coordinate(1);
        }
    }
    return grid;
}

/// Three holes in the first column.
Grid withGap(Grid grid, std::int32_t firstRow) {
    for (std::int32_t row = firstRow; row < firstRow + 3; ++row) {
        std::fill_n(grid.pixel(0, row), 3, 0.0F);
    }
    return grid;
}

void expectPlainSurface(const GridSurface& surface, const Object3D& mesh, float delta) {
    std::vector<float> expected = plainRaster(mesh, mesh.vertices.get());
    const std::vector<float> normals = plainRaster(mesh, mesh.vertexNormals.get());
    for (std::size_t i = 0; i < expected.size(); i += 3) {
        if (!isEmptyCell(&expected[i])) {
            std::transform(&normals[i], &normals[i] + 3, &expected[i], &expected[i],
                           [delta](float normal, float position) { return normal * delta + position; });
        }
    }
    const float* actual = surface.positions().data.get();
    const auto wrong = std::mismatch(expected.begin(), expected.end(), actual).first;
    EXPECT_EQ(wrong, expected.end()) << "value " << wrong - expected.begin();
}

void expectResampled(GridSurface& surface, const Grid& grid, const char* what) {
    SCOPED_TRACE(what);
    constexpr float kDelta = -0.25F;
    const auto mesh = gridToMesh(&grid, true);
    surface.resample(*mesh);
    expectPlainSurface(surface, *mesh, 0);
    surface.move(constantDeltaGrid(static_cast<double>(kDelta)).get());
    expectPlainSurface(surface, *mesh, kDelta);
}

TEST(GridSurface, FollowsPositionsNormalsAndEmptyCells) {
    RandomNumbers random;
    GridSurface surface;
    expectResampled(surface, makePatch(random), "first");
    expectResampled(surface, makePatch(random), "other heights");
    Grid holed = makePatch(random);
    std::fill_n(holed.pixel(11, 12), 3, 0.0F);
    expectResampled(surface, holed, "a hole");
    Grid other = makePatch(random);
    std::fill_n(other.pixel(12, 11), 3, 0.0F);
    expectResampled(surface, other, "as many cells, the hole elsewhere");
    expectResampled(surface, withGap(makePatch(random), 21), "three holes");
    expectResampled(surface, withGap(makePatch(random), 1), "as many cells, the holes elsewhere");
    expectResampled(surface, makePatch(random), "no hole");
    Grid shorter = makePatch(random);
    std::fill_n(shorter.pixel(kSide - 1, kSide - 1), 3, 0.0F);
    expectResampled(surface, shorter, "without the last cell");
    expectResampled(surface, makePatch(random), "one cell more behind the same ones");
    expectResampled(surface, makeImage(kGridSize, kGridSize, 3), "nothing");
}

TEST(GridSurface, StaysWithoutDeltas) {
    RandomNumbers random;
    const Grid grid = makePatch(random);
    const auto mesh = gridToMesh(&grid, true);
    GridSurface surface;
    surface.resample(*mesh);
    surface.move(nullptr);
    expectPlainSurface(surface, *mesh, 0);
}

}  // namespace
}  // namespace talvek::test
