#include "weathering/epoch_loop.h"

#include <cstdint>

#include "api/session/report.h"
#include "api/session/session.h"
#include "weathering/epoch_log.h"
#include "weathering/frames.h"

namespace talvek {

void weatherThroughEpochs(Object3D& surface, const EpochMove& move) {
    const std::int32_t numEpochs = session().numEpochs;
    reportNumEpochs(numEpochs);
    for (std::int32_t n = 1; n <= numEpochs; ++n) {
        const EpochRecord& epoch = session().epochTable.epoch(n);
        reportEpochLength(n, epoch);
        move(surface, epoch);
        surface.updateVertexNormals();
        report("\nSaving output object files...\n");
        if (n < numEpochs) {
            writeFrame(surface, n);
        } else {
            writeLastFrame(surface, n);
        }
    }
    if (numEpochs <= 0) {
        writeLastSurface(surface);
    }
}

}  // namespace talvek
