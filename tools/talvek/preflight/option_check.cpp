#include "talvek/preflight/option_check.h"

#include <cstddef>

#include "talvek/plan/mode_names.h"
#include "talvek/support/exit_status.h"

namespace talvek::host {

namespace {

using Family = ModelChoice::Family;

[[noreturn]] void refuseOption(const std::string& option, const SessionPlan& plan, const std::string& remedy) {
    throw Failure(kExitUsage, option + " has no effect in " + modeName(plan.mode) + remedy);
}

void requireDefinedModel(const SessionPlan& plan, const RunOptions& options) {
    const Family wanted = plan.isOffsetting() ? Family::kOffsetting : Family::kWeathering;
    const Family given = options.model ? options.model->family : Family::kAny;
    const bool isOfOther = given != Family::kAny && given != wanted;
    if (isOfOther || !isDefinedModel(plan.mode, plan.model)) {
        const std::int32_t home = !isOfOther                     ? plan.mode
                                  : given == Family::kOffsetting ? TALVEK_MODE_OFFSETTING
                                                                 : TALVEK_MODE_MESH_DATA;
        throw Failure(kExitUndefinedModel, (options.model ? "" : options.config + ": ") + modelName(home, plan.model) +
                                               " is not defined in " + modeName(plan.mode) + "; " +
                                               modelsOf(plan.mode));
    }
}

void requireOffsetOptions(const SessionPlan& plan, const RunOptions& options) {
    constexpr const char* kOtherMode = "; leave it out or choose another mode";
    for (std::size_t slot = 0; slot < options.offsets.size(); ++slot) {
        if (!options.environment[slot].empty()) {
            refuseOption(kEnvironmentOptions[slot], plan, kOtherMode);
        }
        if (!options.offsets[slot].empty() && !usesEpochValue(plan.mode, plan.model, slot)) {
            refuseOption(kOffsetOptions[slot], plan,
                         " with " + modelName(plan.mode, plan.model) + "; leave it out or choose another model");
        }
    }
    for (std::size_t i = 0; i < options.material.size(); ++i) {
        if (options.material[i]) {
            refuseOption(materialOption(i), plan, kOtherMode);
        }
    }
}

void requireWeatheringOptions(const SessionPlan& plan, const RunOptions& options) {
    for (std::size_t slot = 0; slot < options.offsets.size(); ++slot) {
        if (!options.offsets[slot].empty()) {
            refuseOption(kOffsetOptions[slot], plan, "; leave it out or choose another mode");
        }
    }
}

}  // namespace

void requireDefinedPair(const SessionPlan& plan, const RunOptions& options) {
    requireDefinedModel(plan, options);
    if (!plan.needsMap() && !options.mineralMap.empty()) {
        refuseOption("--mineral-map", plan, "; leave it out or choose mode 2 or 3");
    }
    if (plan.isOffsetting()) {
        requireOffsetOptions(plan, options);
    } else {
        requireWeatheringOptions(plan, options);
    }
}

}  // namespace talvek::host
