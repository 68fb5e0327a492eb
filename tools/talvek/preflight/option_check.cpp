#include "talvek/preflight/option_check.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

#include "api/parameter_statement.h"
#include "talvek/plan/mode_names.h"
#include "talvek/support/exit_status.h"
#include "talvek/support/whole_file.h"

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

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view kBlanks = " \t";
    const std::size_t begin = std::min(text.find_first_not_of(kBlanks), text.size());
    return text.substr(begin, text.find_last_not_of(kBlanks) + 1 - begin);
}

/// What a parameter file has after "mode =" or "model =", as the library finds it.
struct ConfigChoices {
    std::optional<std::string> mode;
    std::optional<std::string> model;
};

ConfigChoices readChoices(std::string_view text) {
    ConfigChoices choices;
    while (!text.empty()) {
        const std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(line.size() + 1, text.size()));
        const Statement statement = parseStatement(line);
        if (statement.key.starts_with("model")) {
            choices.model = trimmed(statement.value);
        } else if (statement.key.starts_with("mode")) {
            choices.mode = trimmed(statement.value);
        }
    }
    return choices;
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

std::vector<std::string> replacedChoices(const SessionPlan& plan, const RunOptions& options) {
    std::vector<std::string> warnings;
    if (options.config.empty()) {
        return warnings;
    }
    const ConfigChoices choices = readChoices(readWholeFile(options.config, kExitParameters));
    const auto compare = [&](const std::optional<std::string>& wanted, std::int32_t taken, const std::string& name) {
        if (wanted && *wanted != std::to_string(taken)) {
            warnings.push_back(options.config + ": \"" + *wanted + "\" is taken for " + name);
        }
    };
    if (!options.mode) {
        compare(choices.mode, plan.mode, modeName(plan.mode));
    }
    if (!options.model) {
        compare(choices.model, plan.model, modelName(plan.mode, plan.model));
    }
    return warnings;
}

}  // namespace talvek::host
