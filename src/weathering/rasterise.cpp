#include "weathering/rasterise.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "mesh/vector3.h"

namespace talvek {

namespace {

struct TexturePoint {
    float u, t;
};

TexturePoint operator-(const TexturePoint& a, const TexturePoint& b) {
    return {a.u - b.u, a.t - b.t};
}

float cross(const TexturePoint& q, const TexturePoint& r) {
    return q.u * r.t - q.t * r.u;
}

/// A straight line in texture space that keeps its length at hand.
class Edge {
  public:
    Edge(const TexturePoint& from, const TexturePoint& to)
        : from_(from), to_(to), length_(std::sqrt((to - from).u * (to - from).u + (to - from).t * (to - from).t)) {}

    float distanceTo(const TexturePoint& p) const { return std::fabs(cross(from_ - p, to_ - p)) / length_; }
    /// One-sided on purpose: nothing lies inside a triangle that runs clockwise.
    bool isLeftOf(const TexturePoint& p) const { return cross(from_ - p, to_ - p) >= 0; }

  private:
    TexturePoint from_;
    TexturePoint to_;
    float length_;
};

/// Columns or rows from `first` to `last`.
struct CellRange {
    std::int32_t first;
    std::int32_t last;
};

/// The cell of a coordinate; -1 and kGridSize stand for everything beyond the grid.
std::int32_t cellOf(float coordinate) {
    return static_cast<std::int32_t>(std::clamp(kGridSize * coordinate, -1.0F, static_cast<float>(kGridSize)));
}

/// The cells of the grid between three coordinates.
CellRange cellsBetween(float a, float b, float c) {
    const auto [smallest, largest] = std::minmax({cellOf(a), cellOf(b), cellOf(c)});
    // A triangle left of the grid still reaches its first column: coordinates are cut off towards zero.
    return {std::max(smallest, 0), std::min(std::max(largest, 0), kGridSize - 1)};
}

/// A triangle in texture space and what its corners carry.
struct Triangle {
    TexturePoint a, b, c;
    Vector3<float> valueA, valueB, valueC;
};

void drawTriangle(Grid& grid, const Triangle& triangle) {
    const Edge bc(triangle.b, triangle.c);
    const Edge ca(triangle.c, triangle.a);
    const Edge ab(triangle.a, triangle.b);
    const float heightA = bc.distanceTo(triangle.a);
    const float heightB = ca.distanceTo(triangle.b);
    const float heightC = ab.distanceTo(triangle.c);
    if (!(heightA > 0 && heightB > 0 && heightC > 0)) {
        return;
    }
    const CellRange rows = cellsBetween(triangle.a.t, triangle.b.t, triangle.c.t);
    const CellRange columns = cellsBetween(triangle.a.u, triangle.b.u, triangle.c.u);
    for (std::int32_t y = rows.first; y <= rows.last; ++y) {
        for (std::int32_t x = columns.first; x <= columns.last; ++x) {
            const TexturePoint p = {static_cast<float>(x) / kGridSize, static_cast<float>(y) / kGridSize};
            if (ab.isLeftOf(p) && bc.isLeftOf(p) && ca.isLeftOf(p)) {
                const Vector3<float> value = triangle.valueA * (bc.distanceTo(p) / heightA) +
                                             triangle.valueB * (ca.distanceTo(p) / heightB) +
                                             triangle.valueC * (ab.distanceTo(p) / heightC);
                storeTriple(grid.pixel(x, y), 0, value);
            }
        }
    }
}

/// The texels of a mesh, checked.
class TexelReader {
  public:
    explicit TexelReader(const Object3D& mesh)
        : texels_(mesh.texels.get()),
          indices_(mesh.texelIndex != nullptr ? mesh.texelIndex.get() : mesh.vertexIndex.get()),
          count_(mesh.texels != nullptr ? mesh.numTexels : 0) {}

    /// False when a corner has no texel, or none with finite coordinates.
    bool read(std::int64_t face, Triangle& triangle) const {
        const std::int32_t* corner = indices_ + 3 * face;
        return read(corner[0], triangle.a) && read(corner[1], triangle.b) && read(corner[2], triangle.c);
    }

  private:
    bool read(std::int32_t texel, TexturePoint& point) const {
        if (texel < 0 || texel >= count_) {
            return false;
        }
        const float* coordinates = texels_ + 2 * std::int64_t{texel};
        point = {coordinates[0], coordinates[1]};
        return std::isfinite(point.u) && std::isfinite(point.t);
    }

    const float* texels_;
    const std::int32_t* indices_;
    std::int32_t count_;
};

}  // namespace

std::unique_ptr<Grid> rasteriseToGrid(const Object3D& mesh, const float* attribute) {
    if (attribute == nullptr) {
        return nullptr;
    }
    auto grid = std::make_unique<Grid>(makeImage(kGridSize, kGridSize, 3));
    const TexelReader texels(mesh);
    for (std::int64_t face = 0; face < mesh.numFaces; ++face) {
        Triangle triangle;
        if (texels.read(face, triangle)) {
            const std::int32_t* corner = mesh.vertexIndex.get() + 3 * face;
            triangle.valueA = tripleAt<float>(attribute, corner[0]);
            triangle.valueB = tripleAt<float>(attribute, corner[1]);
            triangle.valueC = tripleAt<float>(attribute, corner[2]);
            drawTriangle(*grid, triangle);
        }
    }
    return grid;
}

}  // namespace talvek
