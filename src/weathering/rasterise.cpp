#include "weathering/rasterise.h"

#include "weathering/grid_sampling.h"

namespace talvek {

std::unique_ptr<Grid> rasteriseToGrid(const Object3D& mesh, const float* attribute) {
    return attribute != nullptr ? GridSampling(mesh).sample(attribute) : nullptr;
}

}  // namespace talvek
