// What a run is going to do: found out once, from the options, and then checked, run and recorded.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "api/session/parameters.h"
#include "talvek.h"

namespace talvek::host {

struct PlannedEpoch {
    EpochRecord record{};
    /// Where a table of epochs gave them: the first and the last day, "2001-01-31", and a remark.
    std::string start;
    std::string end;
    std::string note;

    /// A value by its number in the interface, from 0: the days are none of them.
    double value(std::size_t slot) const { return record.values[slot + 1]; }
    void setValue(std::size_t slot, double value) { record.values[slot + 1] = value; }
};

struct SessionPlan {
    std::int32_t mode = 0;
    std::int32_t model = 0;
    MaterialRecord material{};
    std::vector<PlannedEpoch> epochs;

    std::int32_t numEpochs() const { return static_cast<std::int32_t>(epochs.size()); }
    // What kind of mode it is; one that is not defined is of none.
    bool isOffsetting() const;
    bool needsMap() const;
    bool keepsVertices() const;
    /// Counted as the library counts the time of its frames, in whole days.
    std::uint64_t totalDays() const;
};

/// The plan as a parameter file with all digits of its numbers, so that the library reads just these.
std::string parameterText(const SessionPlan& plan);

}  // namespace talvek::host
