#include "weathering/run_mineral_grid.h"

#include <memory>
#include <optional>

#include "api/session/session.h"
#include "weathering/delta_grid.h"
#include "weathering/epoch_log.h"
#include "weathering/frames.h"
#include "weathering/grid_mesh.h"
#include "weathering/grid_surface.h"
#include "weathering/map_loading.h"
#include "weathering/rasterise.h"

namespace talvek {

namespace {

/// The grid's normals are those of a mesh made of the grid, not those of the input.
GridSurface firstSurface(const Object3D& mesh) {
    // A mesh without vertices need not have an array of them.
    const float none[3] = {};
    const float* vertices = mesh.vertices != nullptr ? mesh.vertices.get() : none;
    const std::unique_ptr<Grid> positions = rasteriseToGrid(mesh, vertices);
    GridSurface surface;
    surface.resample(*gridToMesh(positions.get(), true));
    return surface;
}

/// The map is looked up once; every epoch has a delta of its own.
class EpochDeltas {
  public:
    explicit EpochDeltas(const MineralMap* map) : isHomogeneous_(map == nullptr) {
        if (map != nullptr && map->channels == 3) {
            factors_.emplace(*map);
        }
    }

    std::unique_ptr<Grid> of(double delta) const {
        return isHomogeneous_ ? constantDeltaGrid(delta) : factors_ ? factors_->deltas(delta) : nullptr;
    }

  private:
    bool isHomogeneous_;
    std::optional<MineralFactorGrid> factors_;
};

}  // namespace

void runMineralGrid(const Object3D& mesh) {
    const TalvekSession& current = session();
    const EpochDeltas deltas(loadAndReportMap(true).get());
    GridSurface surface = firstSurface(mesh);
    reportNumEpochs(current.numEpochs);
    for (std::int32_t n = 1; n <= current.numEpochs; ++n) {
        const EpochRecord& epoch = current.epochTable.epoch(n);
        reportEpochLength(n, epoch);
        reportEnvironment(epoch);
        // Every epoch starts from a resampling of the mesh that the epoch before has left.
        surface.move(deltas.of(computeAndReportDelta(epoch)).get());
        const std::unique_ptr<Object3D> frame = gridToMesh(&surface.positions(), true);
        surface.resample(*frame);
        writeFrame(*frame, n);
    }
    writeFirstSurface(mesh);
    writeLastSurface(*gridToMesh(&surface.positions(), true));
}

}  // namespace talvek
