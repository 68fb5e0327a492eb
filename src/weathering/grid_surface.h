// The surface that the QEMSCAN runner weathers: a grid of positions and one of normals.
#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "mesh/object3d.h"
#include "weathering/grid.h"
#include "weathering/grid_sampling.h"

namespace talvek {

class GridSurface {
  public:
    /// Draws a mesh that was made of a grid, its positions and its normals. As long as the meshes have the same texels,
    /// their faces are gone through only once: which cells have a vertex decides about both. Throws std::bad_alloc.
    void resample(const Object3D& gridMesh);

    /// Moves every cell by its delta along its normal; nothing moves without deltas.
    void move(const Grid* deltas);

    const Grid& positions() const { return *positions_; }

  private:
    std::unique_ptr<Grid> positions_;
    std::unique_ptr<Grid> normals_;
    std::optional<GridSampling> sampling_;
    std::vector<float> texels_;
};

}  // namespace talvek
