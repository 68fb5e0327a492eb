// Which point of a mesh lies at each cell of the grid over its texture space.
#pragma once

#include <array>
#include <cstdint>
#include <memory>

#include "base/heap_array.h"
#include "mesh/object3d.h"
#include "weathering/grid.h"

namespace talvek {

/// A point of a mesh between the corners of a face.
struct GridPoint {
    std::array<std::int32_t, 3> corners;
    std::array<float, 3> weights;
};

/// Depends on the faces and the texels of a mesh alone: as long as they stay, all that the corners of its faces carry
/// can be drawn into grids without going through the faces again.
class GridSampling {
  public:
    /// Of faces that overlap the last one counts. Not found are faces that run clockwise or have no extent in texture
    /// space, and those with a corner whose texel does not exist or is not finite. Without a texel index the vertex
    /// index stands for it. Throws std::bad_alloc.
    explicit GridSampling(const Object3D& mesh);

    /// A grid of what the points carry, interpolated between the triples of the corners; cells without a point are 0.
    /// Throws std::bad_alloc.
    std::unique_ptr<Grid> sample(const float* attribute) const;

  private:
    /// Row by row. The first corner of a cell without a point is -1.
    HeapArray<GridPoint> points_;
};

}  // namespace talvek
