// Which cells of the grid a triangle in texture space may reach.
#pragma once

#include <array>
#include <cstdint>

namespace talvek {

/// Columns or rows from `first` to `last`; none when `last` is smaller.
struct CellRange {
    std::int32_t first;
    std::int32_t last;

    std::int64_t count() const { return std::int64_t{last} - first + 1; }
};

/// Bounds the cells that pass the rasteriser's test for lying inside a triangle, a test that is made in single
/// precision and rounds: every cell that passes lies within the bounds, and few that do not. That saves looking at most
/// of the box around a sliver, and at all of it where a triangle runs clockwise.
class TriangleReach {
  public:
    /// Texture coordinates of the three corners, which have to be finite; the fourth values do not count.
    TriangleReach(const std::array<float, 4>& u, const std::array<float, 4>& v);

    /// Whether no point of the grid passes the test, because the triangle runs clockwise by more than rounding hides.
    bool isClockwise() const;

    /// The part of `range` that the triangle may reach in the row at coordinate `v`.
    CellRange columns(float v, CellRange range) const;

  private:
    struct Corner {
        double u, v;
    };

    std::array<Corner, 3> corners_;
    /// By how much the area that a point makes with an edge, negative on its outer side, may be found too large.
    double margin_ = 0;
};

}  // namespace talvek
