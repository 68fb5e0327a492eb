// The state of the process's one session.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>

#include "api/session/parameters.h"
#include "base/system.h"

namespace talvek {

struct TalvekSession {
    static constexpr std::size_t kTextSize = 1024;

    /// The mesh file's name as the host gave it.
    char fileName[kTextSize] = {};
    /// Status and stop request may be used from another thread while a run is under way.
    std::atomic<std::int32_t> status = 0;
    std::atomic<bool> stopRequested = false;
    char cfgFileName[kTextSize] = {};
    char bmpFileName[kTextSize] = {};
    char messageBuffer[kTextSize] = {};
    /// Open while a run is under way, unless it could not be created.
    system::File logFile;
    char logFileName[kTextSize] = {};
    std::int32_t model = 0;
    std::int32_t mode = 0;
    bool saveResults = false;
    HeapRecord<MaterialRecord> materialParams;
    EpochTable epochTable;
    std::int32_t numEpochs = 1;
    /// Days of each epoch when the epoch table is created.
    std::int32_t epochDays = 1;
};

TalvekSession& session();

}  // namespace talvek
