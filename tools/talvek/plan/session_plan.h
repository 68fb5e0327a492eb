// The parameters of a run as the library holds them, handed from the child process to this program.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "talvek.h"

namespace talvek::host {

struct PlannedEpoch {
    std::uint32_t days = 0;
    std::array<float, TALVEK_EPOCH_PARAMS> environment{};
};

struct SessionPlan {
    std::int32_t mode = 0;
    std::int32_t model = 0;
    std::array<float, TALVEK_MATERIAL_PARAMS> material{};
    std::vector<PlannedEpoch> epochs;

    // What kind of mode it is; one that is not defined is of none.
    bool isOffsetting() const;
    bool needsMap() const;
    bool keepsVertices() const;
    std::uint64_t totalDays() const;
};

/// The plan as lines of text, which stand among other lines without being taken for them.
std::string writePlan(const SessionPlan& plan);

/// Finds a plan among the lines of a text; nothing when there is none.
std::optional<SessionPlan> readPlan(std::string_view text);

}  // namespace talvek::host
