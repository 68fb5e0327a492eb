#include "talvek/plan/parameter_source.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "api/session/operating_modes.h"
#include "talvek/plan/parameter_lines.h"
#include "talvek/support/exit_status.h"
#include "talvek/support/messages.h"
#include "talvek/support/whole_file.h"

namespace talvek::host {

namespace {

constexpr double kLongestEpoch = static_cast<double>(TALVEK_MAX_EPOCH_DAYS);
constexpr std::size_t kLargestFile = 16'000'000;

class ConfigCheck {
  public:
    ConfigCheck(const PlanOptions& options, const ParameterLines& lines) : options_(options), lines_(lines) {}

    /// Without its mode it could not be told what the values of the file's epochs are.
    void requireModeAndModel() const {
        requireChoice(lines_.mode, "mode", TALVEK_MODE_GRAIN_WEAVER, "add it");
        if (!options_.model) {
            requireChoice(lines_.model, "model", TALVEK_MODEL_ACID_RAIN, "add it, or give --model");
        }
    }

    /// A file without the statement has one epoch.
    std::int32_t givenEpochs() const {
        return lines_.numEpochs
                   ? static_cast<std::int32_t>(requireWhole(*lines_.numEpochs, "epcs", 1, TALVEK_MAX_EPOCHS))
                   : 1;
    }

    void requireEpochs() const {
        const std::int32_t given = givenEpochs();
        if (!lines_.epochs.empty() && lines_.epochs.rbegin()->first > given) {
            refuse(lines_.epochs.rbegin()->second.line,
                   "epc_" + std::to_string(lines_.epochs.rbegin()->first) + " is beyond the " +
                       (lines_.numEpochs ? countOf(static_cast<std::uint64_t>(given), "epoch") + " of epcs"
                                         : "one epoch that a file without epcs has") +
                       "; say how many there are, \"epcs = " + std::to_string(lines_.epochs.rbegin()->first) + ";\"");
        }
        const std::int32_t used = std::min(options_.epochs.value_or(given), given);
        for (std::int32_t n = 1; n <= used; ++n) {
            requireEpoch(n);
        }
    }

    void warnOfMissingMaterial(std::int32_t mode) const {
        const bool isGiven =
            std::ranges::all_of(options_.material, [](const auto& value) { return value.has_value(); });
        if (mode != TALVEK_MODE_OFFSETTING && !lines_.material && !isGiven) {
            printWarning(options_.config +
                         ": there is no mtl statement; the material is the default one, as far as "
                         "options do not say otherwise");
        }
    }

  private:
    [[noreturn]] void refuse(std::size_t line, const std::string& what) const {
        throw Failure(kExitParameters,
                      line > 0 ? placeIn(options_.config, line) + what : options_.config + ": " + what);
    }

    double requireWhole(const ParameterLine& line, const std::string& key, double smallest, double largest) const {
        const double value = line.values[0];
        if (value != std::floor(value) || value < smallest || value > largest) {
            refuse(line.line, key + " is " + briefNumber(value) + ", and has to be a whole number, " +
                                  briefNumber(smallest) + " to " + briefNumber(largest));
        }
        return value;
    }

    void requireChoice(const std::optional<ParameterLine>& line, const std::string& key, std::int32_t largest,
                       const std::string& remedy) const {
        if (!line) {
            refuse(0, "there is no " + key + " statement, such as \"" + key + " = 1;\"; " + remedy);
        }
        requireWhole(*line, key, 0, largest);
    }

    /// Options can give all that an epoch has.
    bool isGivenByOptions() const {
        const auto areGiven = [](const auto& values) {
            return std::ranges::all_of(values, [](const EpochValues& value) { return !value.empty(); });
        };
        return !options_.days.empty() && (areGiven(options_.environment) || areGiven(options_.offsets));
    }

    void requireEpoch(std::int32_t number) const {
        auto line = lines_.epochs.find(number);
        line = line == lines_.epochs.end() ? lines_.epochs.find(0) : line;
        if (line != lines_.epochs.end()) {
            requireDays(line->second, number);
        } else if (!isGivenByOptions()) {
            refuse(lines_.numEpochs ? lines_.numEpochs->line : 0,
                   "nothing gives the days and values of epoch " + std::to_string(number) + "; add an epc_" +
                       std::to_string(number) + " statement, or an epc_0 for all epochs that have none");
        }
    }

    void requireDays(const ParameterLine& line, std::int32_t number) const {
        const double days = line.values[0];
        if (options_.days.empty() && (days < 1 || days > kLongestEpoch)) {
            refuse(line.line, "the days of epoch " + std::to_string(number) + " are " + briefNumber(days) +
                                  ", and not in the range 1 to " + std::to_string(TALVEK_MAX_EPOCH_DAYS) +
                                  "; correct the file, or give --days");
        }
    }

    const PlanOptions& options_;
    const ParameterLines& lines_;
};

ParameterLines linesOf(const std::string& name) {
    const std::string text = readBeginning(name, kLargestFile, kExitParameters);
    if (text.size() == kLargestFile) {
        throw Failure(kExitParameters, name + ": the file is too large for a parameter file");
    }
    ParameterLines lines = readParameterLines(name, text);
    if (lines.isEmpty()) {
        throw Failure(kExitParameters,
                      name + ": there is no statement in the file; talvek run --save-config writes a whole one");
    }
    return lines;
}

EpochRecord epochIn(const ParameterLines& lines, std::int32_t number, std::int32_t mode) {
    for (const std::int32_t wanted : {number, 0}) {
        if (const auto line = lines.epochs.find(wanted); line != lines.epochs.end()) {
            EpochRecord epoch{};
            std::ranges::copy(line->second.values, epoch.values.begin());
            return epoch;
        }
    }
    return createEpochTable(1, 1, mode).epoch(1);
}

SessionPlan planOf(const ParameterLines& lines, std::int32_t numEpochs) {
    SessionPlan plan;
    plan.mode = static_cast<std::int32_t>(lines.mode->values[0]);
    plan.model = lines.model ? static_cast<std::int32_t>(lines.model->values[0]) : 0;
    plan.material = *createMaterialRecord(plan.mode);
    if (lines.material) {
        std::ranges::copy(lines.material->values, plan.material.values.begin());
    }
    for (std::int32_t n = 1; n <= numEpochs; ++n) {
        plan.epochs.push_back({.record = epochIn(lines, n, plan.mode), .start = {}, .end = {}, .note = {}});
    }
    return plan;
}

}  // namespace

SessionPlan readParameters(const PlanOptions& options) {
    const ParameterLines lines = linesOf(options.config);
    const ConfigCheck check(options, lines);
    check.requireModeAndModel();
    check.requireEpochs();
    SessionPlan plan = planOf(lines, check.givenEpochs());
    check.warnOfMissingMaterial(options.mode.value_or(plan.mode));
    return plan;
}

}  // namespace talvek::host
