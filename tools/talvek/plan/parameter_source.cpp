#include "talvek/plan/parameter_source.h"

#include <algorithm>

#include "api/parameter_file.h"
#include "api/session/session.h"
#include "base/input_file.h"
#include "talvek/support/exit_status.h"

namespace talvek::host {

namespace {

/// This process runs no simulation, so nothing else uses its session.
void nameParameterFile(const std::string& path) {
    TalvekSession& current = session();
    if (path.size() >= TalvekSession::kTextSize) {
        throw Failure(kExitParameters, path + ": the name is too long");
    }
    *std::ranges::copy(path, current.cfgFileName).out = '\0';
}

SessionPlan planOfSession() {
    const TalvekSession& current = session();
    SessionPlan plan{.mode = current.mode, .model = current.model, .material = *current.materialParams, .epochs = {}};
    for (std::int32_t n = 1; n <= std::min(current.numEpochs, current.epochTable.size); ++n) {
        plan.epochs.push_back({.record = current.epochTable.epoch(n), .start = {}, .end = {}, .note = {}});
    }
    return plan;
}

}  // namespace

SessionPlan readParameters(const std::string& path) {
    nameParameterFile(path);
    // The library tells of a file that it cannot open on standard output.
    if (!InputFile(path.c_str()).isOpen() || !readParameterHeader()) {
        throw Failure(kExitParameters, path + ": cannot read the parameter file");
    }
    TalvekSession& current = session();
    current.materialParams = createMaterialRecord(current.mode);
    current.epochTable = createEpochTable(current.numEpochs, current.epochDays, current.mode);
    if (!readParameterFile()) {
        throw Failure(kExitParameters, path + ": cannot read the parameter file");
    }
    return planOfSession();
}

}  // namespace talvek::host
