// The functions that hosts call. Checks of arguments and stores are made here, in the order that decides which result
// code a call with several faults gets; the work is done elsewhere.
#include <algorithm>
#include <cstring>
#include <limits>
#include <new>
#include <span>
#include <string>
#include <string_view>

#include "api/frame_results.h"
#include "api/parameter_file.h"
#include "api/run_driver.h"
#include "api/session/parameters.h"
#include "api/session/report.h"
#include "api/session/session.h"
#include "base/message_format.h"
#include "base/number_text.h"
#include "base/run_file_names.h"
#include "talvek.h"

using talvek::EpochRecord;
using talvek::session;
using talvek::TalvekSession;

namespace {

/// Runs what may run out of memory; no exception reaches the host.
template <typename Work>
std::int32_t guarded(std::int32_t resultWithoutMemory, Work work) noexcept {
    try {
        return work();
    } catch (const std::bad_alloc&) {
        return resultWithoutMemory;
    }
}

bool isBeyondEpochs(std::uint32_t number) {
    return number > static_cast<std::uint32_t>(session().numEpochs);
}

/// Whether an epoch number names no epoch, or one that the table was created without.
bool hasNoRecord(std::uint32_t epoch) {
    return isBeyondEpochs(epoch) || epoch > static_cast<std::uint32_t>(session().epochTable.size);
}

/// The records that an epoch number names in a setter: one, or for 0 all that the session has.
std::span<EpochRecord> namedEpochs(std::uint32_t epoch) {
    const std::span<EpochRecord> all(session().epochTable.epochs.get(),
                                     static_cast<std::size_t>(session().epochTable.size));
    if (epoch == 0) {
        return all.first(std::min(all.size(), static_cast<std::size_t>(session().numEpochs)));
    }
    return all.subspan(epoch - 1, 1);
}

void createMissingStores() {
    TalvekSession& current = session();
    if (current.materialParams == nullptr) {
        current.materialParams = talvek::createMaterialRecord(current.mode);
    }
    if (!current.epochTable) {
        current.epochTable = talvek::createEpochTable(current.numEpochs, current.epochDays, current.mode);
    }
}

void releaseStores() {
    session().materialParams.reset();
    session().epochTable = {};
}

void copyText(char* out, std::string_view text) {
    std::memcpy(out, text.data(), text.size());
    out[text.size()] = '\0';
}

bool fitsWithDerivedNames(std::string_view name) {
    return name.size() < TALVEK_FILE_NAME_SIZE && talvek::parameterFileName(name).size() < TALVEK_FILE_NAME_SIZE &&
           talvek::frameFileName(name, TALVEK_MAX_EPOCHS).size() < TALVEK_FRAME_FILE_NAME_SIZE;
}

void setFileName(std::string_view name) {
    TalvekSession& current = session();
    copyText(current.fileName, name);
    copyText(current.bmpFileName, talvek::mineralMapName(name));
    copyText(current.cfgFileName, talvek::parameterFileName(name));
    copyText(current.logFileName, talvek::runLogName(name));
}

std::int32_t appendText(const char* path, std::string_view text) {
    std::string expanded(text);
    expanded.resize(talvek::expandWithoutArguments(text, expanded.data()));
    talvek::system::writeToStandardOutput(expanded);
    talvek::system::File file = talvek::system::File::openForAppending(path);
    const bool isWritten = file.isOpen() && talvek::writeText(file, expanded);
    return isWritten && file.close() ? TALVEK_OK : TALVEK_ERROR_RANGE;
}

}  // namespace

extern "C" {

int32_t talvekInit(void) {
    return guarded(TALVEK_ERROR_NULL, [] {
        createMissingStores();
        session().status.store(TALVEK_STATUS_READY, std::memory_order_relaxed);
        return TALVEK_OK;
    });
}

void talvekFree(void) {
    releaseStores();
}

int32_t talvekStart(void) {
    return talvek::runSimulation();
}

void talvekStop(void) {
    session().stopRequested.store(true, std::memory_order_relaxed);
    session().status.store(TALVEK_STATUS_READY, std::memory_order_relaxed);
}

int32_t talvekGetStatus(void) {
    return session().status.load(std::memory_order_relaxed);
}

int32_t talvekSetFileName(const char* name) {
    if (name == nullptr) {
        return TALVEK_ERROR_NULL;
    }
    return guarded(TALVEK_ERROR_RANGE, [name] {
        if (!fitsWithDerivedNames(name)) {
            return TALVEK_ERROR_RANGE;
        }
        setFileName(name);
        return TALVEK_OK;
    });
}

int32_t talvekGetFileName(char* out) {
    if (out == nullptr) {
        return TALVEK_ERROR_NULL;
    }
    copyText(out, session().fileName);
    return TALVEK_OK;
}

int32_t talvekSetMode(int32_t mode) {
    const bool isValid = mode >= 0 && mode <= TALVEK_MODE_GRAIN_WEAVER;
    session().mode = isValid ? mode : TALVEK_MODE_MESH_DATA;
    return isValid ? TALVEK_OK : TALVEK_ERROR_RANGE;
}

int32_t talvekGetMode(void) {
    return session().mode;
}

int32_t talvekGetMaxMode(void) {
    return TALVEK_MODE_GRAIN_WEAVER;
}

int32_t talvekSetModel(int32_t model) {
    const bool isValid = model >= 0 && model <= TALVEK_MODEL_ACID_RAIN;
    session().model = isValid ? model : TALVEK_MODEL_ACID_RAIN;
    return isValid ? TALVEK_OK : TALVEK_ERROR_RANGE;
}

int32_t talvekGetModel(void) {
    return session().model;
}

int32_t talvekSetNumEpochs(int32_t n) {
    if (n < 1 || n > TALVEK_MAX_EPOCHS) {
        return TALVEK_ERROR_RANGE;
    }
    session().numEpochs = n;
    return TALVEK_OK;
}

int32_t talvekGetNumEpochs(void) {
    return session().numEpochs;
}

int32_t talvekGetMaxEpochs(void) {
    return TALVEK_MAX_EPOCHS;
}

int32_t talvekGetMaxEpochDays(void) {
    return TALVEK_MAX_EPOCH_DAYS;
}

int32_t talvekSetTimeSpan(int32_t numEpochs, int32_t days) {
    const bool isCountValid = numEpochs >= 1 && numEpochs <= TALVEK_MAX_EPOCHS;
    const bool areDaysValid = days >= 1 && days <= TALVEK_MAX_EPOCH_DAYS;
    session().numEpochs = isCountValid ? numEpochs : 1;
    session().epochDays = areDaysValid ? days : 365;
    return isCountValid && areDaysValid ? TALVEK_OK : TALVEK_ERROR_RANGE;
}

int32_t talvekSetEpochTimeSpan(uint32_t epoch, uint32_t days) {
    if (days == 0 || days > TALVEK_MAX_EPOCH_DAYS) {
        return TALVEK_ERROR_RANGE;
    }
    if (!session().epochTable) {
        return TALVEK_ERROR_NULL;
    }
    if (hasNoRecord(epoch)) {
        return TALVEK_ERROR_RANGE;
    }
    for (EpochRecord& record : namedEpochs(epoch)) {
        record.values[0] = days;
    }
    return TALVEK_OK;
}

int32_t talvekGetEpochTimeSpan(uint32_t epoch) {
    if (epoch == 0 || hasNoRecord(epoch)) {
        return 0;
    }
    return talvek::saturateToInt(namedEpochs(epoch)[0].days());
}

int32_t talvekSetMaterialParams(const float* in) {
    if (in == nullptr || session().materialParams == nullptr) {
        return TALVEK_ERROR_NULL;
    }
    std::copy_n(in, TALVEK_MATERIAL_PARAMS, session().materialParams->values.begin());
    return TALVEK_OK;
}

int32_t talvekGetMaterialParams(float* out) {
    if (session().materialParams == nullptr) {
        talvek::system::writeToStandardOutput("gmtlv NOT created OK!\n\n");
        return TALVEK_ERROR_NULL;
    }
    if (out == nullptr) {
        return TALVEK_ERROR_NULL;
    }
    for (const double value : session().materialParams->values) {
        *out++ = static_cast<float>(value);
    }
    return TALVEK_OK;
}

int32_t talvekSetEpochParams(uint32_t epoch, const float* in) {
    if (in == nullptr || !session().epochTable) {
        return TALVEK_ERROR_NULL;
    }
    if (hasNoRecord(epoch)) {
        return TALVEK_ERROR_RANGE;
    }
    for (EpochRecord& record : namedEpochs(epoch)) {
        std::copy_n(in, TALVEK_EPOCH_PARAMS, record.values.begin() + 1);
    }
    return TALVEK_OK;
}

int32_t talvekGetEpochParams(uint32_t epoch, float* out) {
    if (!session().epochTable) {
        talvek::system::writeToStandardOutput("genvv NOT created OK!\n\n");
        return TALVEK_ERROR_NULL;
    }
    if (out == nullptr) {
        return TALVEK_ERROR_NULL;
    }
    if (epoch == 0 || hasNoRecord(epoch)) {
        return TALVEK_ERROR_RANGE;
    }
    for (const double value : std::span(namedEpochs(epoch)[0].values).subspan(1)) {
        *out++ = static_cast<float>(value);
    }
    return TALVEK_OK;
}

int32_t talvekReadParams(void) {
    return guarded(TALVEK_ERROR_NULL, [] {
        talvek::system::writeToStandardOutput("Releasing allocated memory for the params!\n");
        releaseStores();
        // Without a file the session keeps its mode, model and count, and the stores get their defaults.
        const bool isHeaderRead = talvek::readParameterHeader();
        talvek::system::writeToStandardOutput("Allocating memory for the params!\n");
        createMissingStores();
        if (isHeaderRead && talvek::readParameterFile()) {
            return TALVEK_OK;
        }
        // A file that broke off may have filled a part of them.
        releaseStores();
        createMissingStores();
        return TALVEK_ERROR_RANGE;
    });
}

int32_t talvekSaveParams(void) {
    const TalvekSession& current = session();
    if (current.materialParams == nullptr || !current.epochTable || current.epochTable.size < current.numEpochs) {
        return TALVEK_ERROR_NULL;
    }
    return guarded(TALVEK_ERROR_RANGE, [] { return talvek::writeParameterFile() ? TALVEK_OK : TALVEK_ERROR_RANGE; });
}

int32_t talvekSetResults(int32_t flag) {
    session().saveResults = flag == 1;
    return flag == 0 || flag == 1 ? TALVEK_OK : TALVEK_ERROR_RANGE;
}

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

int32_t talvekResetLogFile(const char* path) {
    if (path == nullptr) {
        return TALVEK_ERROR_NULL;
    }
    talvek::system::File file = talvek::system::File::openForWriting(path);
    return file.isOpen() && file.close() ? TALVEK_OK : TALVEK_ERROR_RANGE;
}

int32_t talvekAppendLogFile(const char* path, const char* text) {
    if (path == nullptr || text == nullptr) {
        return TALVEK_ERROR_NULL;
    }
    return guarded(TALVEK_ERROR_RANGE, [=] { return appendText(path, text); });
}

// Two names, one function each: hosts compare the addresses.
#if defined(__GNUC__)
#if !defined(__clang__)
#pragma GCC diagnostic ignored "-Wmissing-attributes"
#endif
int32_t talvekGetMaxModel(void) __attribute__((alias("talvekGetMaxMode")));
int32_t talvekGetNumFrames(void) __attribute__((alias("talvekGetNumEpochs")));
#endif

}  // extern "C"
