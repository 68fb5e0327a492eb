// How few cells have to be looked at for a triangle in texture space.
#include "weathering/triangle_reach.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace talvek::test {
namespace {

constexpr CellRange kAll = {0, 459};

/// The cells of the whole grid that a triangle may reach.
std::int64_t cellsWithin(const TriangleReach& reach) {
    std::int64_t cells = 0;
    for (int y = 0; y < 460; ++y) {
        cells += std::max<std::int64_t>(reach.columns(static_cast<float>(y) / 460.0F, kAll).count(), 0);
    }
    return cells;
}

TEST(TriangleReach, IsAboutTheTriangleItself) {
    // Half of the grid's cells, and at most two more in each row.
    const std::int64_t cells = cellsWithin(TriangleReach({0, 1, 0}, {0, 0, 1}));
    EXPECT_GE(cells, 460 * 461 / 2);
    EXPECT_LE(cells, 460 * 461 / 2 + 2 * 460);
}

TEST(TriangleReach, OfASliverIsAFewCellsInARow) {
    EXPECT_LE(cellsWithin(TriangleReach({0, 1, 0.5F}, {0, 1, 0.501F})), 4 * 460);
    EXPECT_LE(cellsWithin(TriangleReach({0, 1, 0.5F}, {1, 0, 0.501F})), 4 * 460);
}

TEST(TriangleReach, IsNothingBesideTheTriangle) {
    EXPECT_EQ(cellsWithin(TriangleReach({2, 3, 2}, {0, 0, 1})), 0);
    EXPECT_EQ(cellsWithin(TriangleReach({-3, -2, -3}, {0, 0, 1})), 0);
    EXPECT_EQ(cellsWithin(TriangleReach({0.2F, 0.8F, 0.5F}, {1.5F, 1.5F, 2})), 0);
}

TEST(TriangleReach, StaysWithinTheColumnsGiven) {
    const CellRange columns = TriangleReach({0, 1, 0}, {0, 0, 1}).columns(0.25F, {100, 120});
    EXPECT_EQ(columns.first, 100);
    EXPECT_EQ(columns.last, 120);
}

TEST(TriangleReach, TellsWhatRunsClockwise) {
    EXPECT_TRUE(TriangleReach({0, 0, 1}, {0, 1, 0}).isClockwise());
    EXPECT_TRUE(TriangleReach({-1e30F, 0, 1e30F}, {-1e30F, 1e30F, -1e30F}).isClockwise());
    EXPECT_FALSE(TriangleReach({0, 1, 0}, {0, 0, 1}).isClockwise());
}

// Rounding may let a cell pass as inside.
TEST(TriangleReach, DoesNotTakeSidesWhereRoundingDecides) {
    EXPECT_FALSE(TriangleReach({0, 0.5F, 1}, {0, 0.5F, 1}).isClockwise());
    EXPECT_FALSE(TriangleReach({0, 0.5F, 1}, {0, 0.50000006F, 1}).isClockwise());
}

}  // namespace
}  // namespace talvek::test
