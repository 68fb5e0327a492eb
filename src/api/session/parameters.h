// What a run is told about the stone and its surroundings.
#pragma once

#include <array>
#include <cstdint>

#include "base/heap_array.h"

namespace talvek {

/// The material of the stone, in the order in which hosts and parameter files give it.
struct MaterialRecord {
    std::array<double, 8> values;

    double de() const { return values[0]; }
    double den() const { return values[1]; }
    double hd() const { return values[2]; }
    double ks() const { return values[3]; }
    double ksn() const { return values[4]; }
    double kr() const { return values[5]; }
    double mb() const { return values[6]; }
    double db() const { return values[7]; }
};

/// The length of an epoch and its environment. In the offsetting mode the last four slots carry offsets per day.
struct EpochRecord {
    std::array<double, 5> values;

    double days() const { return values[0]; }
    double so2() const { return values[1]; }
    double no2() const { return values[2]; }
    double rv() const { return values[3]; }
    double rph() const { return values[4]; }

    double constantOffset() const { return values[1]; }
    double meanOffset() const { return values[2]; }
    double offsetSpread() const { return values[3]; }
    double smoothing() const { return values[4]; }
};

/// The epochs of a session. The number of epochs can be changed without the table; only the first `size` exist.
struct EpochTable {
    HeapArray<EpochRecord> epochs;
    std::int32_t size = 0;

    /// Epoch n, counted from 1, which has to exist.
    EpochRecord& epoch(std::int32_t n) const { return epochs[static_cast<std::size_t>(n) - 1]; }
    explicit operator bool() const { return epochs != nullptr; }
};

/// The material with which the operating mode starts. Throws std::bad_alloc.
HeapRecord<MaterialRecord> createMaterialRecord(std::int32_t mode);

/// `numEpochs` epochs of `epochDays` days in the environment with which the operating mode starts. Throws
/// std::bad_alloc.
EpochTable createEpochTable(std::int32_t numEpochs, std::int32_t epochDays, std::int32_t mode);

}  // namespace talvek
