#include "talvek/plan/plan_making.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "base/number_text.h"
#include "talvek/plan/epoch_table.h"
#include "talvek/plan/mode_names.h"
#include "talvek/plan/parameter_source.h"
#include "talvek/plan/units.h"
#include "talvek/support/exit_status.h"
#include "talvek/support/messages.h"

namespace talvek::host {

namespace {

constexpr std::int32_t kDefaultDays = 365;

void setModeAndModel(SessionPlan& plan, std::int32_t mode, std::int32_t model) {
    if (mode < 0 || mode > TALVEK_MODE_GRAIN_WEAVER) {
        throw Failure(kExitUndefinedMode, "mode " + std::to_string(mode) + " is not defined; modes are 0 to 3");
    }
    if (model < 0 || model > TALVEK_MODEL_ACID_RAIN) {
        throw Failure(kExitUndefinedModel, "model " + std::to_string(model) + " is not defined; models are 0 to 3");
    }
    plan.mode = mode;
    plan.model = model;
}

PlannedEpoch defaultEpoch(std::int32_t mode) {
    return {.record = createEpochTable(1, kDefaultDays, mode).epoch(1), .start = {}, .end = {}, .note = {}};
}

std::int32_t defaultModel(std::int32_t mode) {
    if (mode == TALVEK_MODE_OFFSETTING) {
        return TALVEK_MODEL_CONSTANT_OFFSET;
    }
    return TALVEK_MODEL_ACID_RAIN;
}

SessionPlan planOfDefaults(const PlanOptions& options) {
    SessionPlan plan;
    const std::int32_t mode = options.mode.value_or(TALVEK_MODE_MESH_DATA);
    setModeAndModel(plan, mode, options.model ? options.model->number : defaultModel(mode));
    plan.material = *createMaterialRecord(mode);
    plan.epochs.assign(static_cast<std::size_t>(options.epochs.value_or(1)), defaultEpoch(mode));
    return plan;
}

/// The four values of an epoch are offsets in one mode and gases and rain in the others, and models are numbered anew.
void requireSameKindOfMode(const PlanOptions& options, std::int32_t mode, std::int32_t own) {
    const bool isOffsetting = mode == TALVEK_MODE_OFFSETTING;
    const auto& given = isOffsetting ? options.offsets : options.environment;
    bool isReplaced = options.model.has_value();
    for (std::size_t slot = 0; slot < given.size() && isReplaced; ++slot) {
        isReplaced = !given[slot].empty() || !usesEpochValue(mode, options.model->number, slot);
    }
    if (isOffsetting == (own == TALVEK_MODE_OFFSETTING) || isReplaced) {
        return;
    }
    throw Failure(kExitUsage,
                  options.config + ": it is for " + modeName(own) + ", and " + modeName(mode) +
                      (isOffsetting ? " would take its gases and rain for offsets; leave --mode out, or give --model "
                                      "and the model's offsets as options"
                                    : " would take its offsets for gases and rain; leave --mode out, or give --model, "
                                      "--so2, --no2, --rv and --rph as options"));
}

/// Epochs that the file does not have are like its last.
SessionPlan planOfConfig(const PlanOptions& options) {
    SessionPlan plan = readParameters(options);
    const std::int32_t own = plan.mode;
    setModeAndModel(plan, options.mode.value_or(own), options.model ? options.model->number : plan.model);
    requireSameKindOfMode(options, plan.mode, own);
    if (options.epochs) {
        plan.epochs.resize(static_cast<std::size_t>(*options.epochs), PlannedEpoch(plan.epochs.back()));
    }
    return plan;
}

void requireOneOrEach(std::size_t given, const SessionPlan& plan, const char* option) {
    const std::size_t epochs = plan.epochs.size();
    if (given > 1 && given != epochs) {
        const std::string values = std::to_string(given);
        throw Failure(
            kExitUsage,
            std::string(option) + (epochs == 1 ? " takes one value; it was given " + values + ", and there is 1 epoch"
                                               : " takes one value, or one for each of the " + std::to_string(epochs) +
                                                     " epochs; it was given " + values));
    }
}

template <typename Value, typename Set>
void applyList(SessionPlan& plan, const std::vector<Value>& values, const char* option, Set set) {
    requireOneOrEach(values.size(), plan, option);
    for (std::size_t i = 0; i < plan.epochs.size() && !values.empty(); ++i) {
        set(plan.epochs[i], values[values.size() == 1 ? 0 : i]);
    }
}

void applyEpochOptions(SessionPlan& plan, const PlanOptions& options) {
    applyList(plan, options.days, "--days",
              [](PlannedEpoch& epoch, std::uint32_t days) { epoch.record.values[0] = days; });
    const auto& given = plan.isOffsetting() ? options.offsets : options.environment;
    const char* const* names = plan.isOffsetting() ? kOffsetOptions : kEnvironmentOptions;
    for (std::size_t slot = 0; slot < given.size(); ++slot) {
        // The library takes them in single precision.
        applyList(plan, given[slot], names[slot],
                  [slot](PlannedEpoch& epoch, float value) { epoch.setValue(slot, static_cast<double>(value)); });
    }
}

[[noreturn]] void refuseBesideTable(const std::string& option) {
    throw Failure(kExitUsage, option + " has no effect beside --epoch-table; leave it out");
}

void requireNoOtherEpochs(const SessionPlan& plan, const PlanOptions& options) {
    if (plan.isOffsetting()) {
        throw Failure(kExitUsage, "--epoch-table has gases and rain, and " + modeName(plan.mode) + " takes offsets");
    }
    if (options.epochs) {
        refuseBesideTable("--epochs");
    }
    if (!options.days.empty()) {
        refuseBesideTable("--days");
    }
}

[[noreturn]] void refuseGivenTwice(const std::string& table, const std::string& name) {
    throw Failure(kExitUsage, table + " has a column for " + name + ", and --" + name + " gives it too; leave one out");
}

/// Values that the table has no column for come from the options, or are the default ones.
void takeTable(SessionPlan& plan, const PlanOptions& options) {
    requireNoOtherEpochs(plan, options);
    const PlannedEpoch defaults = defaultEpoch(plan.mode);
    TableEpochs table = readEpochTable(options.epochTable, options.emptyCells, defaults);
    for (std::size_t slot = 0; slot < TALVEK_EPOCH_PARAMS; ++slot) {
        const std::string name = kEnvironmentOptions[slot] + 2;
        const bool isOption = !options.environment[slot].empty();
        if (table.isGiven[slot] && isOption) {
            refuseGivenTwice(options.epochTable, name);
        }
        if (!table.isGiven[slot] && !isOption) {
            printWarning(options.epochTable + ": there is no column for " + name + "; every epoch takes " +
                         briefNumber(defaults.value(slot)) + " " + std::string(unitsOfValue(slot).own));
        }
    }
    plan.epochs = std::move(table.epochs);
}

}  // namespace

SessionPlan makePlan(const PlanOptions& options) {
    SessionPlan plan = options.config.empty() ? planOfDefaults(options) : planOfConfig(options);
    if (!options.epochTable.empty()) {
        takeTable(plan, options);
    }
    applyEpochOptions(plan, options);
    for (std::size_t i = 0; i < options.material.size(); ++i) {
        if (options.material[i]) {
            plan.material.values[i] = static_cast<double>(*options.material[i]);
        }
    }
    return plan;
}

}  // namespace talvek::host
