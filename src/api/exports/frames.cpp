// Exported functions: the frames.
#include <limits>

#include "api/exports/common.h"
#include "api/frame_results.h"
#include "base/run_file_names.h"
#include "talvek.h"

using talvek::copyText;
using talvek::guarded;
using talvek::hasNoRecord;
using talvek::isBeyondEpochs;
using talvek::session;

extern "C" {

int32_t talvekGetFrameFileName(uint32_t frame, char* out) {
    if (out == nullptr) {
        return TALVEK_ERROR_NULL;
    }
    if (isBeyondEpochs(frame)) {
        return TALVEK_ERROR_RANGE;
    }
    return guarded(TALVEK_ERROR_RANGE, [frame, out] {
        copyText(out, talvek::frameFileName(session().fileName, frame));
        return TALVEK_OK;
    });
}

int32_t talvekGetFrameTime(uint32_t frame, uint32_t* days) {
    const talvek::DefaultFloatEnvironment pinned;
    if (days == nullptr) {
        return TALVEK_ERROR_NULL;
    }
    *days = 0;
    if (!session().epochTable) {
        return TALVEK_ERROR_NULL;
    }
    if (hasNoRecord(frame)) {
        return TALVEK_ERROR_RANGE;
    }
    *days = talvek::daysUntilFrame(static_cast<std::int32_t>(frame));
    return TALVEK_OK;
}

int32_t talvekGetFrameNumTriangles(uint32_t frame) {
    if (isBeyondEpochs(frame)) {
        return 0;
    }
    return guarded(0, [frame] { return talvek::countFrameTriangles(frame); });
}

int32_t talvekGetFrameGeometry(uint32_t frame, float* vertices, float* normals) {
    if (vertices == nullptr || normals == nullptr) {
        return TALVEK_ERROR_NULL;
    }
    if (isBeyondEpochs(frame)) {
        return TALVEK_ERROR_RANGE;
    }
    return guarded(TALVEK_ERROR_FRAME, [=] { return talvek::readFrameGeometry(frame, vertices, normals); });
}

int32_t talvekSaveFrameGeometryObj(const char* path, int32_t numTriangles, const float* vertices,
                                   const float* /*normals*/) {
    if (path == nullptr || vertices == nullptr) {
        return TALVEK_ERROR_NULL;
    }
    if (numTriangles < 0 || numTriangles > std::numeric_limits<std::int32_t>::max() / 3) {
        return TALVEK_ERROR_RANGE;
    }
    return guarded(TALVEK_ERROR_RANGE, [=] {
        talvek::saveTriangles(path, numTriangles, vertices);
        return TALVEK_OK;
    });
}

}  // extern "C"
