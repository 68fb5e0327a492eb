#include "weathering/run_mineral_grid.h"

#include <memory>

#include "api/session.h"
#include "weathering/delta_grid.h"
#include "weathering/epochs.h"
#include "weathering/frames.h"
#include "weathering/grid_mesh.h"
#include "weathering/rasterise.h"
#include "weathering/session_map.h"

namespace talvek {

namespace {

/// A surface on the grid. Every epoch starts from a resampling of the mesh that the epoch before has left.
struct GridSurface {
    explicit GridSurface(const Object3D& mesh)
        : positions(rasteriseToGrid(mesh, mesh.vertices.get())),
          normals(rasteriseToGrid(mesh, mesh.vertexNormals.get())) {}

    std::unique_ptr<Grid> positions;
    std::unique_ptr<Grid> normals;
};

/// The grid's normals are those of a mesh made of the grid, not those of the input.
GridSurface firstSurface(const Object3D& mesh) {
    // A mesh without vertices need not have an array of them.
    const float none[3] = {};
    const float* vertices = mesh.vertices != nullptr ? mesh.vertices.get() : none;
    const std::unique_ptr<Grid> positions = rasteriseToGrid(mesh, vertices);
    return GridSurface(*gridToMesh(positions.get(), true));
}

std::unique_ptr<Grid> epochDeltas(const MineralMap* map, double delta) {
    return map != nullptr ? mineralDeltaGrid(*map, delta) : constantDeltaGrid(delta);
}

}  // namespace

void runMineralGrid(const Object3D& mesh) {
    const TalvekSession& current = session();
    const std::unique_ptr<MineralMap> map = reportedMineralMap(true);
    GridSurface surface = firstSurface(mesh);
    reportNumEpochs(current.numEpochs);
    for (std::int32_t n = 1; n <= current.numEpochs; ++n) {
        const EpochRecord& epoch = current.epochTable.epoch(n);
        reportEpochLength(n, epoch);
        reportEnvironment(epoch);
        const std::unique_ptr<Grid> deltas = epochDeltas(map.get(), reportedDelta(epoch));
        applyDeltaGrid(surface.positions.get(), surface.normals.get(), deltas.get());
        const std::unique_ptr<Object3D> frame = gridToMesh(surface.positions.get(), true);
        surface = GridSurface(*frame);
        writeFrame(*frame, n);
    }
    writeSummary(mesh, *gridToMesh(surface.positions.get(), true));
}

}  // namespace talvek
