// Exported functions: the parameters.
#include "api/session/parameters.h"

#include <algorithm>
#include <span>

#include "api/exports/common.h"
#include "api/parameter_file.h"
#include "api/session/session_inputs.h"
#include "api/session/stores.h"
#include "base/number_text.h"
#include "talvek.h"

using talvek::DefaultFloatEnvironment;
using talvek::EpochRecord;
using talvek::guarded;
using talvek::hasNoRecord;
using talvek::session;
using talvek::TalvekSession;

namespace {

/// The records that an epoch number names in a setter: one, or for 0 all that the session has.
std::span<EpochRecord> namedEpochs(std::uint32_t epoch) {
    const std::span<EpochRecord> all(session().epochTable.epochs.get(),
                                     static_cast<std::size_t>(session().epochTable.size));
    if (epoch == 0) {
        return all.first(std::min(all.size(), static_cast<std::size_t>(session().numEpochs)));
    }
    return all.subspan(epoch - 1, 1);
}

}  // namespace

extern "C" {

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
    const DefaultFloatEnvironment pinned;
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
    const DefaultFloatEnvironment pinned;
    if (epoch == 0 || hasNoRecord(epoch)) {
        return 0;
    }
    return talvek::saturateToInt(namedEpochs(epoch)[0].days());
}

int32_t talvekSetMaterialParams(const float* in) {
    const DefaultFloatEnvironment pinned;
    if (in == nullptr || session().materialParams == nullptr) {
        return TALVEK_ERROR_NULL;
    }
    std::copy_n(in, TALVEK_MATERIAL_PARAMS, session().materialParams->values.begin());
    return TALVEK_OK;
}

int32_t talvekGetMaterialParams(float* out) {
    const DefaultFloatEnvironment pinned;
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
    const DefaultFloatEnvironment pinned;
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
    const DefaultFloatEnvironment pinned;
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
        talvek::releaseStores();
        // Without a file the session keeps its mode, model and count, and the stores get their defaults.
        const bool isHeaderRead = talvek::readParameterHeader();
        talvek::system::writeToStandardOutput("Allocating memory for the params!\n");
        talvek::createMissingStores();
        if (isHeaderRead && talvek::readParameterFile()) {
            return TALVEK_OK;
        }
        // A file that broke off may have filled a part of them.
        talvek::releaseStores();
        talvek::createMissingStores();
        return TALVEK_ERROR_RANGE;
    });
}

int32_t talvekSaveParams(void) {
    const TalvekSession& current = session();
    if (current.materialParams == nullptr || !current.epochTable || current.epochTable.size < current.numEpochs) {
        return TALVEK_ERROR_NULL;
    }
    if (talvek::isSameFileAsAny(current.cfgFileName, {current.fileName, current.bmpFileName})) {
        return TALVEK_ERROR_RANGE;
    }
    return guarded(TALVEK_ERROR_RANGE, [] { return talvek::writeParameterFile() ? TALVEK_OK : TALVEK_ERROR_RANGE; });
}

int32_t talvekSetResults(int32_t flag) {
    session().saveResults = flag == 1;
    return flag == 0 || flag == 1 ? TALVEK_OK : TALVEK_ERROR_RANGE;
}

// Two names, one function: hosts compare the addresses.
#if defined(__GNUC__)
#if !defined(__clang__)
#pragma GCC diagnostic ignored "-Wmissing-attributes"
#endif
int32_t talvekGetNumFrames(void) __attribute__((alias("talvekGetNumEpochs")));
#endif

}  // extern "C"
