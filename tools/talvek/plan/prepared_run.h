// A run that has been found possible.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "talvek/plan/run_files.h"
#include "talvek/plan/session_plan.h"

namespace talvek::host {

/// What the frames of a run have to hold.
struct ExpectedCounts {
    std::int32_t vertices = 0;
    std::int32_t faces = 0;
};

struct PreparedRun {
    RunFiles files;
    SessionPlan plan;
    bool keepInputFrame = false;
    /// Nothing where the frames' vertices are not those of the mesh.
    std::optional<ExpectedCounts> counts;

    std::vector<std::string> outputs() const { return outputFiles(files, plan.numEpochs(), keepInputFrame); }
};

}  // namespace talvek::host
