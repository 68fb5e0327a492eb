// How far the cells of the grid move.
#include "weathering/delta_grid.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "support/plain_delta_grid.h"

namespace talvek::test {
namespace {

struct Pixel {
    float p0, p1, p2;
};

constexpr Pixel kWhitePixel = {255, 255, 255};
constexpr Pixel kGreyPixel = {128, 128, 128};
constexpr Pixel kRedPixel = {0, 0, 255};
constexpr Pixel kGreenPixel = {0, 192, 0};

MineralMap makeMap(std::int32_t width, std::int32_t height, const std::vector<Pixel>& pixels) {
    MineralMap map = makeImage(width, height, 3);
    for (std::size_t i = 0; i < pixels.size(); ++i) {
        map.data[3 * i] = pixels[i].p0;
        map.data[3 * i + 1] = pixels[i].p1;
        map.data[3 * i + 2] = pixels[i].p2;
    }
    return map;
}

double at(const Grid& grid, std::int32_t x, std::int32_t y) {
    return static_cast<double>(*grid.pixel(x, y));
}

TEST(ConstantDeltaGrid, HoldsTheNarrowedDelta) {
    const auto grid = constantDeltaGrid(0.1);
    ASSERT_EQ(grid->width, 460);
    ASSERT_EQ(grid->height, 460);
    ASSERT_EQ(grid->channels, 1);
    for (std::size_t i = 0; i < 460 * 460; ++i) {
        ASSERT_EQ(grid->data[i], 0.1F);
    }
}

TEST(MineralDeltaGrid, IsNothingForOtherChannels) {
    for (const std::int32_t channels : {0, 1, 2, 4}) {
        EXPECT_EQ(mineralDeltaGrid(makeImage(4, 4, channels), 1), nullptr) << channels;
    }
}

TEST(MineralDeltaGrid, InterpolatesBetweenTheFourPixels) {
    const MineralMap map = makeMap(2, 2, {kWhitePixel, kGreyPixel, kRedPixel, kGreenPixel});
    const auto grid = mineralDeltaGrid(map, 10);
    for (int c = 0; c < 230; c += 5) {
        for (int r = 0; r < 230; r += 5) {
            const double x = c / 230.0;
            const double y = r / 230.0;
            const double expected = 10 * (1 - x) * (1 - y) + 0 * x * (1 - y) + 9.4 * (1 - x) * y + 7.7 * x * y;
            ASSERT_NEAR(at(*grid, c, r), expected, 1e-5) << c << ", " << r;
        }
    }
}

TEST(MineralDeltaGrid, CalculatesInTheStatedPrecisions) {
    const MineralMap map = makeMap(3, 2, {kWhitePixel, kRedPixel, kGreenPixel, kRedPixel, kGreenPixel, kGreyPixel});
    const double delta = -0.123456789;
    const auto narrow = static_cast<float>(delta);
    const float white = narrow * 1.0F;
    const float red = narrow * 0.94F;
    const float green = narrow * 0.77F;
    const auto grid = mineralDeltaGrid(map, delta);
    for (int c = 0; c < 153; ++c) {
        for (int r = 0; r < 230; ++r) {
            const double ax = c * 3 / 460.0;
            const double ay = r * 2 / 460.0;
            const double top = static_cast<double>(red - white) * ax + static_cast<double>(white);
            const double bottom = static_cast<double>(green - red) * ax + static_cast<double>(red);
            ASSERT_EQ(*grid->pixel(c, r), static_cast<float>((bottom - top) * ay + top)) << c << ", " << r;
        }
    }
}

TEST(MineralDeltaGrid, CarriesTheLastPixelsBeyondTheFarEdges) {
    const std::vector<Pixel> palette = {kWhitePixel, kGreyPixel, kRedPixel, kGreenPixel};
    for (const auto& [width, height] : {std::pair{1, 1}, {2, 3}, {7, 5}, {460, 460}, {600, 2}, {3, 1000}}) {
        std::vector<Pixel> pixels;
        for (std::size_t i = 0; i < static_cast<std::size_t>(width * height); ++i) {
            pixels.push_back(palette[(i * i / 3 + i) % 4]);
        }
        const MineralMap map = makeMap(width, height, pixels);
        const auto grid = mineralDeltaGrid(map, -0.017);
        const std::vector<float> expected = plainDeltas(map, -0.017);
        const auto wrong = std::mismatch(expected.begin(), expected.end(), grid->data.get()).first;
        ASSERT_EQ(wrong, expected.end()) << width << " x " << height << ", cell " << wrong - expected.begin();
    }
}

TEST(MineralDeltaGrid, IsZeroUnderAMapWithoutPixels) {
    const auto grid = mineralDeltaGrid(makeImage(0, 0, 3), 1);
    for (std::size_t i = 0; i < 460 * 460; ++i) {
        ASSERT_EQ(grid->data[i], 0);
    }
}

Grid filledGrid(std::int32_t width, std::int32_t height, const std::vector<float>& cell) {
    Grid grid = makeImage(width, height, static_cast<std::int32_t>(cell.size()));
    for (std::size_t i = 0; i < static_cast<std::size_t>(width * height); ++i) {
        std::copy(cell.begin(), cell.end(), grid.data.get() + i * cell.size());
    }
    return grid;
}

TEST(ApplyDeltaGrid, MovesCellsAlongTheirNormals) {
    Grid positions = filledGrid(3, 2, {1, 2, 3});
    std::fill_n(positions.pixel(1, 1), 3, 0.0F);
    const Grid normals = filledGrid(3, 2, {0, 0.5F, -1});
    Grid deltas = filledGrid(3, 2, {0.25F});
    *deltas.pixel(2, 0) = 4;
    applyDeltaGrid(&positions, &normals, &deltas);
    EXPECT_EQ(std::vector<float>(positions.pixel(0, 0), positions.pixel(0, 0) + 3),
              (std::vector<float>{1, 2.125F, 2.75F}));
    EXPECT_EQ(std::vector<float>(positions.pixel(2, 0), positions.pixel(2, 0) + 3), (std::vector<float>{1, 4, -1}));
    EXPECT_EQ(std::vector<float>(positions.pixel(1, 1), positions.pixel(1, 1) + 3), (std::vector<float>{0, 0, 0}))
        << "an empty cell stays empty";
}

TEST(ApplyDeltaGrid, DoesNothingWithoutItsThreeGrids) {
    Grid positions = filledGrid(2, 2, {1, 2, 3});
    const Grid normals = filledGrid(2, 2, {0, 0, 1});
    const Grid deltas = filledGrid(2, 2, {1});
    applyDeltaGrid(nullptr, &normals, &deltas);
    applyDeltaGrid(&positions, nullptr, &deltas);
    applyDeltaGrid(&positions, &normals, nullptr);
    applyDeltaGrid(&positions, &normals, &normals);
    applyDeltaGrid(&positions, &deltas, &deltas);
    EXPECT_EQ(positions.pixel(0, 0)[2], 3);
    Grid single = filledGrid(2, 2, {1});
    applyDeltaGrid(&single, &normals, &deltas);
    EXPECT_EQ(single.data[0], 1);
}

TEST(ApplyDeltaGrid, StaysInsideTheSmallestGrid) {
    Grid positions = filledGrid(3, 3, {1, 2, 3});
    const Grid normals = filledGrid(3, 3, {0, 0, 1});
    const Grid deltas = filledGrid(2, 1, {1});
    applyDeltaGrid(&positions, &normals, &deltas);
    EXPECT_EQ(positions.pixel(1, 0)[2], 4);
    EXPECT_EQ(positions.pixel(2, 0)[2], 3);
    EXPECT_EQ(positions.pixel(0, 1)[2], 3);
}

}  // namespace
}  // namespace talvek::test
