#include "api/session/parameters.h"

#include "talvek.h"

namespace talvek {

namespace {

// The defaults are single-precision values: a host that reads one back as a float gets what it would have written.
constexpr MaterialRecord kSandstone = {{0.14F, 0.11F, 544.3F, 312, 375, 2452, 100.9F, 2.714F}};
constexpr MaterialRecord kNoMaterial = {};

EpochRecord defaultEpoch(std::int32_t epochDays, std::int32_t mode) {
    const auto days = static_cast<double>(epochDays);
    if (mode == TALVEK_MODE_OFFSETTING) {
        return {{days, -0.004F, -0.004F, 0.002F, -0.0002F}};
    }
    constexpr float kGasUnit = 1.0e-13F;
    return {{days, kGasUnit * 4.09F, kGasUnit * 10.23F, 1.13F, 4.5}};
}

}  // namespace

HeapRecord<MaterialRecord> createMaterialRecord(std::int32_t mode) {
    return makeRecord(mode == TALVEK_MODE_OFFSETTING ? kNoMaterial : kSandstone);
}

EpochTable createEpochTable(std::int32_t numEpochs, std::int32_t epochDays, std::int32_t mode) {
    return {makeFilledArray(numEpochs, defaultEpoch(epochDays, mode)), numEpochs};
}

}  // namespace talvek
