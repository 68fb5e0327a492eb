// Exported functions: the session.
#include <string>
#include <string_view>

#include "api/exports/common.h"
#include "api/run_driver.h"
#include "api/session/stores.h"
#include "base/run_file_names.h"
#include "talvek.h"

using talvek::copyText;
using talvek::guarded;
using talvek::session;
using talvek::TalvekSession;

namespace {

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

}  // namespace

extern "C" {

int32_t talvekInit(void) {
    return guarded(TALVEK_ERROR_NULL, [] {
        talvek::createMissingStores();
        session().status.store(TALVEK_STATUS_READY, std::memory_order_relaxed);
        return TALVEK_OK;
    });
}

void talvekFree(void) {
    talvek::releaseStores();
}

int32_t talvekStart(void) {
    const talvek::DefaultFloatEnvironment pinned;
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

// Two names, one function: hosts compare the addresses. The numbers are equal by chance.
static_assert(TALVEK_MODE_GRAIN_WEAVER == 3 && TALVEK_MODEL_ACID_RAIN == 3);
#if defined(__GNUC__)
#if !defined(__clang__)
#pragma GCC diagnostic ignored "-Wmissing-attributes"
#endif
int32_t talvekGetMaxModel(void) __attribute__((alias("talvekGetMaxMode")));
#endif

}  // extern "C"
