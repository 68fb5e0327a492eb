#include "weathering/run_mesh_data.h"

#include "api/session.h"
#include "weathering/epochs.h"
#include "weathering/frames.h"
#include "weathering/surface.h"

namespace talvek {

void runMeshData(const Object3D& mesh) {
    const TalvekSession& current = session();
    const std::unique_ptr<Object3D> surface = workingCopy(mesh);
    reportNumEpochs(current.numEpochs);
    for (std::int32_t n = 1; n <= current.numEpochs; ++n) {
        const EpochRecord& epoch = current.epochTable.epoch(n);
        reportEpochLength(n, epoch);
        reportEnvironment(epoch);
        moveAlongNormals(*surface, static_cast<float>(reportedDelta(epoch)));
        surface->updateNormals(true);
        saveFrame(*surface, n);
    }
    writeSummary(mesh, *surface);
}

}  // namespace talvek
