#include "weathering/grid_mesh.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace talvek {

namespace {

constexpr std::int32_t kNoVertex = -1;

/// The vertex of every cell of a grid, numbered column by column.
class VertexNumbers {
  public:
    explicit VertexNumbers(const Grid& grid) : height_(grid.height) {
        numbers_.reserve(static_cast<std::size_t>(grid.width) * static_cast<std::size_t>(grid.height));
        for (std::int32_t x = 0; x < grid.width; ++x) {
            for (std::int32_t y = 0; y < grid.height; ++y) {
                numbers_.push_back(isEmptyCell(grid.pixel(x, y)) ? kNoVertex : count_++);
            }
        }
    }

    std::int32_t count() const { return count_; }
    std::int32_t at(std::int32_t x, std::int32_t y) const {
        return numbers_[static_cast<std::size_t>(std::int64_t{height_} * x + y)];
    }

  private:
    std::vector<std::int32_t> numbers_;
    std::int32_t height_;
    std::int32_t count_ = 0;
};

struct Cell {
    std::int32_t x, y;
};

/// The corners of a triangle, as steps from the middle of a block.
using Steps = std::array<Cell, 3>;

constexpr Cell kMiddle = {0, 0};
constexpr Cell kNorth = {0, -1};
constexpr Cell kSouth = {0, 1};
constexpr Cell kWest = {-1, 0};
constexpr Cell kEast = {1, 0};
constexpr Cell kNorthWest = {-1, -1};
constexpr Cell kNorthEast = {1, -1};
constexpr Cell kSouthWest = {-1, 1};
constexpr Cell kSouthEast = {1, 1};

/// The diagonals alternate, so that neighbouring blocks make up diamonds.
constexpr Steps kBlockTriangles[] = {
    {kMiddle, kNorth, kNorthEast}, {kMiddle, kNorthEast, kEast}, {kMiddle, kEast, kSouth}, {kSouthEast, kSouth, kEast},
    {kMiddle, kSouth, kSouthWest}, {kMiddle, kSouthWest, kWest}, {kMiddle, kWest, kNorth}, {kNorthWest, kNorth, kWest},
};

/// Writes the triangles of a block that have all their vertices; returns where the next ones go.
std::int32_t* writeBlock(std::int32_t* faces, const VertexNumbers& numbers, const Cell& middle) {
    for (const Steps& steps : kBlockTriangles) {
        const auto vertex = [&](const Cell& step) { return numbers.at(middle.x + step.x, middle.y + step.y); };
        faces[0] = vertex(steps[0]);
        faces[1] = vertex(steps[1]);
        faces[2] = vertex(steps[2]);
        const bool isWhole = faces[0] != kNoVertex && faces[1] != kNoVertex && faces[2] != kNoVertex;
        faces += isWhole ? 3 : 0;
    }
    return faces;
}

void fillFaces(Object3D& mesh, const Grid& grid, const VertexNumbers& numbers) {
    const std::int64_t blocks = (std::int64_t{grid.width} - 1) / 2 * ((std::int64_t{grid.height} - 1) / 2);
    // A triangle that is not whole needs room to be written, too.
    HeapArray<std::int32_t> faces = makeArray<std::int32_t>(blocks * 24 + 3);
    std::int32_t* end = faces.get();
    for (std::int32_t x = 1; x <= grid.width - 2; x += 2) {
        for (std::int32_t y = 1; y <= grid.height - 2; y += 2) {
            end = writeBlock(end, numbers, {x, y});
        }
    }
    const std::int64_t indices = end - faces.get();
    mesh.numFaces = static_cast<std::int32_t>(indices / 3);
    mesh.vertexIndex = shrinkArray(std::move(faces), indices);
    mesh.texelIndex = copyArray(mesh.vertexIndex.get(), indices);
}

void fillVertices(Object3D& mesh, const Grid& grid, const VertexNumbers& numbers) {
    mesh.numVertices = numbers.count();
    mesh.numTexels = numbers.count();
    mesh.vertices = makeArray<float>(3 * std::int64_t{mesh.numVertices});
    mesh.texels = makeArray<float>(2 * std::int64_t{mesh.numTexels});
    for (std::int32_t x = 0; x < grid.width; ++x) {
        for (std::int32_t y = 0; y < grid.height; ++y) {
            const std::int32_t vertex = numbers.at(x, y);
            if (vertex != kNoVertex) {
                std::copy_n(grid.pixel(x, y), 3, mesh.vertices.get() + 3 * std::int64_t{vertex});
                float* texel = mesh.texels.get() + 2 * std::int64_t{vertex};
                texel[0] = static_cast<float>(static_cast<double>(x) / grid.width);
                texel[1] = static_cast<float>(static_cast<double>(y) / grid.height);
            }
        }
    }
}

}  // namespace

std::unique_ptr<Object3D> gridToMesh(const Grid* grid, [[maybe_unused]] bool flag) {
    if (grid == nullptr || grid->channels != 3) {
        return nullptr;
    }
    auto mesh = std::make_unique<Object3D>();
    const VertexNumbers numbers(*grid);
    fillVertices(*mesh, *grid, numbers);
    fillFaces(*mesh, *grid, numbers);
    mesh->updateNormals(true);
    return mesh;
}

}  // namespace talvek
