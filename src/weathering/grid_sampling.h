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

/// Finds out once for each cell of the grid which face of a mesh covers it, from the faces and the texels alone. As
/// long as these do not change, any values at the vertices (positions, normals) can be drawn into grids by `sample`,
/// which does not go through the faces again.
class GridSampling {
  public:
    /// Where several faces cover a cell, the last of them counts. A face covers nothing that runs clockwise or has no
    /// extent in texture space, or one of whose corners has a texel that does not exist or is not finite: no face of a
    /// mesh without texels covers anything. In a mesh without a texel index the vertices' own numbers are the texels'
    /// numbers. Throws std::bad_alloc.
    explicit GridSampling(const Object3D& mesh);

    /// A grid of the triples in `attribute`, one for each vertex, interpolated between the corners of each cell's face;
    /// zeros in cells that no face covers. Throws std::bad_alloc.
    std::unique_ptr<Grid> sample(const float* attribute) const;

  private:
    /// Row by row. The first corner of a cell without a point is -1.
    HeapArray<GridPoint> points_;
};

}  // namespace talvek
