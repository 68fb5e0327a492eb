#include "weathering/grid_surface.h"

#include <cstring>

#include "weathering/delta_grid.h"

namespace talvek {

void GridSurface::resample(const Object3D& gridMesh) {
    if (!sampling_ || !hasTexelsOf(gridMesh)) {
        sampling_.emplace(gridMesh);
        numTexels_ = gridMesh.numTexels;
        texels_ = copyArray(gridMesh.texels.get(), 2 * std::int64_t{numTexels_});
    }
    positions_ = sampling_->sample(gridMesh.vertices.get());
    normals_ = sampling_->sample(gridMesh.vertexNormals.get());
}

void GridSurface::move(const Grid* deltas) {
    applyDeltaGrid(positions_.get(), normals_.get(), deltas);
}

bool GridSurface::hasTexelsOf(const Object3D& gridMesh) const {
    return gridMesh.numTexels == numTexels_ &&
           std::memcmp(gridMesh.texels.get(), texels_.get(), arrayBytes<float>(2 * std::int64_t{numTexels_})) == 0;
}

}  // namespace talvek
