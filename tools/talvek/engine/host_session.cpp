#include "talvek/engine/host_session.h"

#include <array>
#include <cstdio>

#include "talvek.h"
#include "talvek/engine/session_start.h"
#include "talvek/plan/session_plan.h"
#include "talvek/support/exit_status.h"

namespace talvek::host {

namespace {

void requireOneOrEach(std::size_t given, const char* option) {
    const auto epochs = static_cast<std::size_t>(talvekGetNumEpochs());
    if (given > 1 && given != epochs) {
        const std::string values = std::to_string(given);
        throw Failure(
            kExitUsage,
            std::string(option) + (epochs == 1 ? " takes one value; it was given " + values + ", and there is 1 epoch"
                                               : " takes one value, or one for each of the " + std::to_string(epochs) +
                                                     " epochs; it was given " + values));
    }
}

template <typename Value>
Value valueForEpoch(const std::vector<Value>& values, std::int32_t n) {
    return values.size() == 1 ? values[0] : values[static_cast<std::size_t>(n) - 1];
}

void applyDays(const std::vector<std::uint32_t>& days) {
    requireOneOrEach(days.size(), "--days");
    for (std::int32_t n = 1; n <= talvekGetNumEpochs() && !days.empty(); ++n) {
        require(talvekSetEpochTimeSpan(static_cast<std::uint32_t>(n), valueForEpoch(days, n)),
                "the days are out of range");
    }
}

void applyEpochValues(const std::array<EpochValues, TALVEK_EPOCH_PARAMS>& given, const char* const* names) {
    for (std::size_t slot = 0; slot < TALVEK_EPOCH_PARAMS; ++slot) {
        requireOneOrEach(given[slot].size(), names[slot]);
        for (std::int32_t n = 1; n <= talvekGetNumEpochs() && !given[slot].empty(); ++n) {
            Epoch epoch = readEpoch(static_cast<std::uint32_t>(n));
            epoch.environment[slot] = valueForEpoch(given[slot], n);
            require(talvekSetEpochParams(static_cast<std::uint32_t>(n), epoch.environment.data()),
                    "an epoch is missing");
        }
    }
}

void applyMaterial(const RunOptions& options) {
    std::array<float, TALVEK_MATERIAL_PARAMS> material{};
    require(talvekGetMaterialParams(material.data()), "the material is missing");
    bool isChanged = false;
    for (std::size_t i = 0; i < material.size(); ++i) {
        isChanged = isChanged || options.material[i].has_value();
        material[i] = options.material[i].value_or(material[i]);
    }
    // Passing the values back would narrow those of a parameter file to single precision for nothing.
    if (isChanged) {
        require(talvekSetMaterialParams(material.data()), "the material is missing");
    }
}

void configure(const RunOptions& options) {
    startSession(options);
    applyDays(options.days);
    const bool isOffsetting = talvekGetMode() == TALVEK_MODE_OFFSETTING;
    applyEpochValues(isOffsetting ? options.offsets : options.environment,
                     isOffsetting ? kOffsetOptions : kEnvironmentOptions);
    applyMaterial(options);
    require(talvekSetResults(options.keepInputFrame ? 1 : 0), "the results flag is out of range");
    require(talvekSetFileName(options.mesh.c_str()), options.mesh + ": the name is too long");
}

const char* reasonOf(std::int32_t result) {
    switch (result) {
        case TALVEK_ERROR_MESH:
            return "the mesh cannot be loaded or worked with";
        case TALVEK_ERROR_UNDEFINED_MODE:
            return "this library does not have the operating mode";
        case TALVEK_ERROR_UNDEFINED_MODEL:
            return "the weathering model is not defined in this operating mode";
        default:
            return "it had no parameters";
    }
}

SessionPlan currentPlan() {
    SessionPlan plan;
    plan.mode = talvekGetMode();
    plan.model = talvekGetModel();
    require(talvekGetMaterialParams(plan.material.data()), "the material is missing");
    for (std::int32_t n = 1; n <= talvekGetNumEpochs(); ++n) {
        const Epoch epoch = readEpoch(static_cast<std::uint32_t>(n));
        plan.epochs.push_back({epoch.days, epoch.environment});
    }
    return plan;
}

}  // namespace

int describeSession(const RunOptions& options) {
    configure(options);
    const std::string text = writePlan(currentPlan());
    std::fwrite(text.data(), 1, text.size(), stdout);
    talvekFree();
    return kExitDone;
}

int runSession(const RunOptions& options) {
    configure(options);
    if (options.saveConfig) {
        require(talvekSaveParams(), options.mesh + ": cannot write the parameter file beside it");
    }
    const std::int32_t result = talvekStart();
    talvekFree();
    require(result, options.mesh + ": the run was aborted; " + reasonOf(result));
    return kExitDone;
}

}  // namespace talvek::host
