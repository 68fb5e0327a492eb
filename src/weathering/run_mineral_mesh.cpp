#include "weathering/run_mineral_mesh.h"

#include <memory>

#include "api/session/session.h"
#include "mesh/texture.h"
#include "weathering/epoch_log.h"
#include "weathering/epoch_loop.h"
#include "weathering/frames.h"
#include "weathering/map_loading.h"
#include "weathering/mineral_offsets.h"
#include "weathering/surface.h"

namespace talvek {

namespace {

/// Without a weathering model an epoch moves the surface by its constant offset. The run driver lets no such run
/// through; other callers may.
double findAndReportMove(const EpochRecord& epoch) {
    if (session().model == 0) {
        reportOffsetPerDay(epoch);
        const double delta = epoch.constantOffset() * epoch.days();
        reportDelta(delta);
        return delta;
    }
    reportEnvironment(epoch);
    return computeAndReportDelta(epoch);
}

void weather(Object3D& surface) {
    const std::unique_ptr<MineralMap> map = loadAndReportMap(hasNamedTexels(surface));
    weatherThroughEpochs(surface, [&map](Object3D& moved, const EpochRecord& epoch) {
        const auto delta = static_cast<float>(findAndReportMove(epoch));
        if (map != nullptr) {
            applyMineralOffsets(moved, *map, delta);
        } else {
            moveAlongNormals(moved, delta);
        }
    });
}

}  // namespace

void runMineralMesh(const Object3D& mesh) {
    weather(*workingCopy(mesh));
    writeFirstSurface(mesh);
}

}  // namespace talvek
