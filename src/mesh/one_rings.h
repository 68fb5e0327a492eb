// Which vertices share an edge with which.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "base/heap_array.h"
#include "mesh/object3d.h"

namespace talvek {

/// For every vertex of a mesh its neighbours, all rings in one array one after the other. Faces that name a vertex
/// twice make it a neighbour of itself, two times over.
class OneRings {
  public:
    OneRings() = default;

    /// Collects the neighbours in the order in which the faces first name them, in time and memory proportional to the
    /// number of faces and vertices, however large a ring is. Vertex indices have to lie in [0, V). Throws
    /// std::bad_alloc.
    explicit OneRings(const Object3D& mesh);

    std::span<const std::int32_t> ring(std::int32_t vertex) const {
        const std::int64_t* bounds = starts_.get() + vertex;
        return {neighbours_.get() + bounds[0], static_cast<std::size_t>(bounds[1] - bounds[0])};
    }
    std::span<std::int32_t> ring(std::int32_t vertex) {
        const std::int64_t* bounds = starts_.get() + vertex;
        return {neighbours_.get() + bounds[0], static_cast<std::size_t>(bounds[1] - bounds[0])};
    }

  private:
    void reserveRings(const Object3D& mesh);
    void collectEdges(const Object3D& mesh);
    void dropRepetitions(std::int32_t numVertices);

    /// V + 1 positions in the array of neighbours.
    HeapArray<std::int64_t> starts_;
    HeapArray<std::int32_t> neighbours_;
};

}  // namespace talvek
