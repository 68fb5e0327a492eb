// Epochs from a table, such as a monitoring station's: one row an epoch.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "talvek/plan/session_plan.h"

namespace talvek::host {

/// What an empty cell stands for.
enum class EmptyCells : std::uint8_t { kRefused, kDefault, kPrevious };

struct TableEpochs {
    std::vector<PlannedEpoch> epochs;
    /// Which of the four values the table has a column for; the others are those of `defaults`.
    std::array<bool, TALVEK_EPOCH_PARAMS> isGiven{};
};

/// Throws Failure, naming the line, the column, the value and the remedy, for whatever is wrong with the table.
TableEpochs readEpochTable(const std::string& path, EmptyCells empty, const PlannedEpoch& defaults);

}  // namespace talvek::host
