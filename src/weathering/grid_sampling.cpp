#include "weathering/grid_sampling.h"

#include <algorithm>
#include <optional>

#include "math/float_lanes.h"
#include "mesh/texture.h"
#include "mesh/vector3.h"
#include "weathering/triangle_reach.h"

namespace talvek {

namespace {

constexpr std::int32_t kNoPoint = -1;
constexpr int kThreeLanes = 7;

/// The texture coordinate of every column and of every row.
constexpr std::array<float, kGridSize> kCellPlaces = [] {
    std::array<float, kGridSize> places{};
    for (std::int32_t cell = 0; cell < kGridSize; ++cell) {
        places[static_cast<std::size_t>(cell)] = static_cast<float>(cell) / kGridSize;
    }
    return places;
}();

/// The cells of the grid between three coordinates.
CellRange cellsBetween(FloatLanes coordinates) {
    // -1 and kGridSize stand for everything beyond the grid.
    const auto cells = toIntegers(clamp(static_cast<float>(kGridSize) * coordinates, -1.0F, kGridSize));
    const std::int32_t smallest = std::min(std::min(cells[0], cells[1]), cells[2]);
    const std::int32_t largest = std::max(std::max(cells[0], cells[1]), cells[2]);
    // A triangle left of the grid still reaches its first column: coordinates are cut off towards zero.
    return {std::max(smallest, 0), std::min(std::max(largest, 0), kGridSize - 1)};
}

/// The texels of a mesh, checked.
class TexelReader {
  public:
    explicit TexelReader(const Object3D& mesh)
        : texels_(mesh.texels.get()),
          indices_(cornerTexels(mesh)),
          count_(mesh.texels != nullptr ? static_cast<std::uint32_t>(mesh.numTexels) : 0) {}

    /// Whether all corners of a face have a texel.
    bool has(std::int64_t face) const { return isTexel(face, 0) && isTexel(face, 1) && isTexel(face, 2); }
    /// The first or the second coordinates of the corners.
    FloatLanes read(std::int64_t face, std::int64_t component) const {
        return {at(face, 0, component), at(face, 1, component), at(face, 2, component), 0.0F};
    }

  private:
    bool isTexel(std::int64_t face, std::int64_t corner) const {
        return static_cast<std::uint32_t>(indices_[3 * face + corner]) < count_;
    }
    float at(std::int64_t face, std::int64_t corner, std::int64_t component) const {
        return texels_[2 * std::int64_t{indices_[3 * face + corner]} + component];
    }

    const float* texels_;
    const std::int32_t* indices_;
    std::uint32_t count_;
};

bool areFinite(FloatLanes a) {
    return whereAtLeast(a - a, 0.0F) == kThreeLanes + 8;
}

/// A triangle in texture space. Lane i of everything belongs to corner i or to the edge opposite it.
class Triangle {
  public:
    Triangle(FloatLanes u, FloatLanes v) : u_(u), v_(v) {}

    CellRange columns() const { return cellsBetween(u_); }
    CellRange rows() const { return cellsBetween(v_); }
    TriangleReach reach() const { return {toArray(u_), toArray(v_)}; }

    /// Twice the areas of the triangles that a point makes with the edges; negative where it lies to the right of one.
    FloatLanes areasAt(float u, float v) const { return areas(u_ - u, v_ - v); }

    /// One-sided on purpose: nothing lies inside a triangle that runs clockwise.
    static bool isInside(FloatLanes areas) { return (whereAtLeast(areas, 0.0F) & kThreeLanes) == kThreeLanes; }

    FloatLanes edgeLengths() const {
        const FloatLanes du = rotateThree(rotateThree(u_) - u_);
        const FloatLanes dv = rotateThree(rotateThree(v_) - v_);
        return squareRoot(du * du + dv * dv);
    }

    /// The distances of the corners from the edges opposite them.
    FloatLanes heights(FloatLanes edgeLengths) const {
        const FloatLanes nextU = rotateThree(u_);
        const FloatLanes nextV = rotateThree(v_);
        const FloatLanes lastU = rotateThree(nextU);
        const FloatLanes lastV = rotateThree(nextV);
        return absolute((nextU - u_) * (lastV - v_) - (nextV - v_) * (lastU - u_)) / edgeLengths;
    }

  private:
    static FloatLanes areas(FloatLanes u, FloatLanes v) { return rotateThree(u * rotateThree(v) - v * rotateThree(u)); }

    FloatLanes u_;
    FloatLanes v_;
};

/// What turns the areas at a point into the weights of the corners.
class Weights {
  public:
    explicit Weights(const Triangle& triangle)
        : lengths_(triangle.edgeLengths()), heights_(triangle.heights(lengths_)) {}

    bool exist() const { return (whereAbove(heights_, 0.0F) & kThreeLanes) == kThreeLanes; }
    std::array<float, 3> at(FloatLanes areas) const {
        const std::array<float, 4> weights = toArray(absolute(areas) / lengths_ / heights_);
        return {weights[0], weights[1], weights[2]};
    }

  private:
    FloatLanes lengths_;
    FloatLanes heights_;
};

/// The cells that have to be looked at for a triangle.
class Search {
  public:
    explicit Search(const Triangle& triangle);

    CellRange rows() const { return rows_; }
    CellRange columns(std::int32_t row) const {
        return reach_ ? reach_->columns(kCellPlaces[static_cast<std::size_t>(row)], columns_) : columns_;
    }

  private:
    CellRange rows_;
    CellRange columns_;
    std::optional<TriangleReach> reach_;
};

Search::Search(const Triangle& triangle) : rows_(triangle.rows()), columns_(triangle.columns()) {
    // Of a smaller box, looking at every cell takes less time than finding out which ones matter.
    constexpr std::int64_t kLargeBox = 64;
    if (rows_.count() * columns_.count() >= kLargeBox) {
        reach_ = triangle.reach();
        if (reach_->isClockwise()) {
            rows_ = {0, -1};
        }
    }
}

/// Most faces of a fine mesh lie between the cells' corners, so the weights wait until there is a cell inside.
void draw(GridPoint* points, const Triangle& triangle, const std::int32_t* corners) {
    const Search search(triangle);
    std::optional<Weights> weights;
    for (std::int32_t y = search.rows().first; y <= search.rows().last; ++y) {
        const CellRange columns = search.columns(y);
        for (std::int32_t x = columns.first; x <= columns.last; ++x) {
            const FloatLanes areas =
                triangle.areasAt(kCellPlaces[static_cast<std::size_t>(x)], kCellPlaces[static_cast<std::size_t>(y)]);
            if (!Triangle::isInside(areas)) {
                continue;
            }
            if (!weights) {
                weights.emplace(triangle);
                if (!weights->exist()) {
                    return;
                }
            }
            points[kGridSize * y + x] = {{corners[0], corners[1], corners[2]}, weights->at(areas)};
        }
    }
}

}  // namespace

GridSampling::GridSampling(const Object3D& mesh)
    : points_(makeFilledArray(std::int64_t{kGridSize} * kGridSize, GridPoint{{kNoPoint, 0, 0}, {}})) {
    const TexelReader texels(mesh);
    for (std::int64_t face = 0; face < mesh.numFaces; ++face) {
        if (texels.has(face)) {
            const FloatLanes u = texels.read(face, 0);
            const FloatLanes v = texels.read(face, 1);
            if (areFinite(u) && areFinite(v)) {
                draw(points_.get(), Triangle(u, v), mesh.vertexIndex.get() + 3 * face);
            }
        }
    }
}

std::unique_ptr<Grid> GridSampling::sample(const float* attribute) const {
    auto grid = std::make_unique<Grid>(makeImage(kGridSize, kGridSize, 3));
    for (std::int64_t cell = 0; cell < std::int64_t{kGridSize} * kGridSize; ++cell) {
        const auto& [corners, weights] = points_[static_cast<std::size_t>(cell)];
        if (corners[0] != kNoPoint) {
            storeTriple(grid->data.get(), cell,
                        tripleAt<float>(attribute, corners[0]) * weights[0] +
                            tripleAt<float>(attribute, corners[1]) * weights[1] +
                            tripleAt<float>(attribute, corners[2]) * weights[2]);
        }
    }
    return grid;
}

}  // namespace talvek
