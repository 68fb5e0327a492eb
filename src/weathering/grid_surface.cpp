#include "weathering/grid_surface.h"

#include <algorithm>
#include <span>

#include "weathering/delta_grid.h"

namespace talvek {

namespace {

std::span<const float> texelsOf(const Object3D& mesh) {
    return {mesh.texels.get(), 2 * static_cast<std::size_t>(mesh.numTexels)};
}

}  // namespace

void GridSurface::resample(const Object3D& gridMesh) {
    const std::span<const float> texels = texelsOf(gridMesh);
    if (!sampling_ || !std::ranges::equal(texels, texels_)) {
        sampling_.emplace(gridMesh);
        texels_.assign(texels.begin(), texels.end());
    }
    positions_ = sampling_->sample(gridMesh.vertices.get());
    normals_ = sampling_->sample(gridMesh.vertexNormals.get());
}

void GridSurface::move(const Grid* deltas) {
    applyDeltaGrid(positions_.get(), normals_.get(), deltas);
}

}  // namespace talvek
