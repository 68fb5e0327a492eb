#include "weathering/run_mesh_data.h"

#include "weathering/epoch_log.h"
#include "weathering/epoch_loop.h"
#include "weathering/frames.h"
#include "weathering/surface.h"

namespace talvek {

namespace {

void moveByDelta(Object3D& surface, const EpochRecord& epoch) {
    reportEnvironment(epoch);
    moveAlongNormals(surface, static_cast<float>(computeAndReportDelta(epoch)));
}

}  // namespace

void runMeshData(const Object3D& mesh) {
    weatherThroughEpochs(*workingCopy(mesh), moveByDelta);
    writeFirstSurface(mesh);
}

}  // namespace talvek
