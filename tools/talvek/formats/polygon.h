// Dividing polygons into triangles by cutting off ears (G. H. Meisters, "Polygons have ears", American Mathematical
// Monthly 82, 1975), in the plane that fits them best.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

namespace talvek::host {

class PolygonDivision {
  public:
    using Point = std::array<double, 3>;

    /// Finds the n - 2 triangles of a polygon of n corners, n being at least 3: places in `corners`, turned as the
    /// polygon is. Returns false when no plane keeps the outline from crossing itself; the triangles then join all
    /// corners, but may overlap. Throws std::length_error when dividing it would take longer than any real surface
    /// needs.
    bool divide(std::span<const Point> corners);

    std::span<const std::array<std::int32_t, 3>> triangles() const { return triangles_; }

  private:
    struct Corner {
        double x = 0;
        double y = 0;
        std::int32_t before = 0;
        std::int32_t after = 0;
        bool isGone = false;
    };

    void project(std::span<const Point> corners);
    double turnAt(const Corner& corner) const;
    bool goesRoundOnce() const;
    void look(std::size_t numCorners);
    bool isEar(std::int32_t at);
    void cut(std::int32_t at);
    bool cutAll(std::int32_t numCorners);

    std::vector<Corner> outline_;
    /// The corners at which the outline turns inwards, some of which may be gone.
    std::vector<std::int32_t> reflex_;
    std::vector<std::array<std::int32_t, 3>> triangles_;
    /// How many more corners may be looked at, over all polygons.
    std::int64_t looks_ = kMostLooks;

    static constexpr std::int64_t kMostLooks = std::int64_t{1} << 29;
};

}  // namespace talvek::host
