#include "weathering/run_mineral_mesh.h"

#include <memory>

#include "api/session/session.h"
#include "weathering/epochs.h"
#include "weathering/frames.h"
#include "weathering/mineral_offsets.h"
#include "weathering/session_map.h"
#include "weathering/surface.h"

namespace talvek {

namespace {

/// Without a weathering model an epoch moves the surface by its constant offset. The run driver lets no such run
/// through; other callers may.
double reportedMove(const EpochRecord& epoch) {
    if (session().model == 0) {
        reportOffsetPerDay(epoch);
        const double delta = epoch.constantOffset() * epoch.days();
        reportDelta(delta);
        return delta;
    }
    reportEnvironment(epoch);
    return reportedDelta(epoch);
}

void weather(Object3D& surface) {
    const TalvekSession& current = session();
    const std::unique_ptr<MineralMap> map = reportedMineralMap(hasTexture(surface));
    reportNumEpochs(current.numEpochs);
    for (std::int32_t n = 1; n <= current.numEpochs; ++n) {
        const EpochRecord& epoch = current.epochTable.epoch(n);
        reportEpochLength(n, epoch);
        const auto delta = static_cast<float>(reportedMove(epoch));
        if (map != nullptr) {
            applyMineralOffsets(surface, *map, delta);
        } else {
            moveAlongNormals(surface, delta);
        }
        surface.updateVertexNormals();
        saveFrame(surface, n);
    }
}

}  // namespace

void runMineralMesh(const Object3D& mesh) {
    weather(*workingCopy(mesh));
    writeFirstSurface(mesh);
}

}  // namespace talvek
