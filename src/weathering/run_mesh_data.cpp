#include "weathering/run_mesh_data.h"

#include "api/session/session.h"
#include "weathering/epochs.h"
#include "weathering/frames.h"
#include "weathering/surface.h"

namespace talvek {

namespace {

void weather(Object3D& surface) {
    const TalvekSession& current = session();
    reportNumEpochs(current.numEpochs);
    for (std::int32_t n = 1; n <= current.numEpochs; ++n) {
        const EpochRecord& epoch = current.epochTable.epoch(n);
        reportEpochLength(n, epoch);
        reportEnvironment(epoch);
        moveAlongNormals(surface, static_cast<float>(reportedDelta(epoch)));
        surface.updateVertexNormals();
        saveFrame(surface, n);
    }
}

}  // namespace

void runMeshData(const Object3D& mesh) {
    weather(*workingCopy(mesh));
    writeFirstSurface(mesh);
}

}  // namespace talvek
