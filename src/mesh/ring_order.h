// The neighbours of a vertex, one after the other around it.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "mesh/object3d.h"

namespace talvek {

/// Sorts rings by angle; keeps its working memory from one ring to the next.
class RingOrder {
  public:
    explicit RingOrder(const Object3D& mesh) : mesh_(mesh) {}

    /// Sorts the neighbours of a vertex by their angle from the first of them, seen along the vertex normal of that
    /// first neighbour. Equal angles keep their order, undefined ones come last. Throws std::bad_alloc.
    void sort(std::int32_t vertex, std::span<std::int32_t> ring);

  private:
    struct Entry {
        float angle;
        std::int32_t place;
        std::int32_t neighbour;
    };

    const Object3D& mesh_;
    std::vector<Entry> entries_;
};

}  // namespace talvek
