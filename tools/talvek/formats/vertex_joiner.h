// Which vertices lie in one place.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace talvek::host {

struct ImportedMesh;

/// Numbers places in the order in which they come. Coordinates are compared by their values; not-a-number equals
/// nothing.
class VertexJoiner {
  public:
    /// New places are added to `positions`, three coordinates each. Room is kept for about `expected` of them.
    VertexJoiner(std::vector<double>& positions, std::size_t expected);

    /// The number of the place. Throws std::length_error when there are more than an index can tell.
    std::int32_t vertexAt(double x, double y, double z);

  private:
    std::size_t slotOf(double x, double y, double z) const;
    void grow();

    std::vector<double>& positions_;
    /// Numbers of vertices, kNone where free; a power of two of them, at most three quarters in use.
    std::vector<std::int32_t> slots_;
    std::size_t mask_ = 0;
};

/// Makes every vertex one with the first one that lies within `distance` of it, in the source's units. Returns how many
/// vertices have gone. Texture coordinates stay with their corners; the colour of the first one counts.
std::int64_t weldVertices(ImportedMesh& mesh, double distance);

/// The same for vertices with equal coordinates.
std::int64_t joinEqualVertices(ImportedMesh& mesh);

}  // namespace talvek::host
