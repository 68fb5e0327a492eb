#include "talvek/commands/rates_command.h"

#include <CLI/CLI.hpp>
#include <charconv>
#include <cstdio>
#include <memory>
#include <string>

#include "talvek/plan/plan_making.h"
#include "talvek/plan/planned_movement.h"
#include "talvek/plan/run_options.h"
#include "talvek/preflight/crust_warning.h"
#include "talvek/preflight/movement_check.h"
#include "talvek/preflight/option_check.h"
#include "talvek/preflight/value_check.h"
#include "talvek/support/exit_status.h"
#include "talvek/support/messages.h"

namespace talvek::host {

namespace {

constexpr const char* kEnvironmentColumns = "so2,no2,rv,rph";
constexpr const char* kOffsetColumns = "offset,mean,sigma,smooth";

/// As many digits as it takes to read the same number back.
std::string digitsOf(double value) {
    char digits[64];
    return {digits, std::to_chars(digits, digits + sizeof digits, value).ptr};
}

std::string quoted(const std::string& text) {
    if (text.find_first_of(",\"") == std::string::npos) {
        return text;
    }
    std::string result = "\"";
    for (const char c : text) {
        result += c == '"' ? std::string("\"\"") : std::string(1, c);
    }
    return result + "\"";
}

void printEpochs(const SessionPlan& plan) {
    std::printf("epoch,start,end,days,%s,delta_mm,sum_days,sum_mm,note\n",
                plan.isOffsetting() ? kOffsetColumns : kEnvironmentColumns);
    double days = 0;
    double sum = 0;
    for (std::size_t i = 0; i < plan.epochs.size(); ++i) {
        const PlannedEpoch& epoch = plan.epochs[i];
        const double delta = plannedDelta(plan, epoch).value_or(0);
        days += epoch.record.days();
        sum += delta;
        std::string line = std::to_string(i + 1) + "," + epoch.start + "," + epoch.end;
        for (const double value : epoch.record.values) {
            line += "," + digitsOf(value);
        }
        line += "," + digitsOf(delta) + "," + digitsOf(days) + "," + digitsOf(sum) + "," + quoted(epoch.note);
        std::printf("%s\n", line.c_str());
    }
}

int ratesCommand(const RunOptions& options) {
    const SessionPlan plan = makePlan(options);
    requireDefinedPair(plan, options);
    requirePossibleValues(plan);
    requireFiniteDeltas(plan);
    if (plan.isOffsetting() && plan.model != TALVEK_MODEL_CONSTANT_OFFSET) {
        throw Failure(kExitUsage,
                      "random offsets and smoothing move every vertex by a distance of its own; there is "
                      "none to tell without a mesh");
    }
    printWarnings({crustWarning(plan)});
    printEpochs(plan);
    return kExitDone;
}

}  // namespace

void addRatesCommand(CommandSet& commands) {
    const auto options = std::make_shared<RunOptions>();
    CLI::App& rates = commands.add("rates", "Print the distance of every epoch as CSV, without a mesh",
                                   [options] { return ratesCommand(*options); });
    addPlanArguments(rates, *options);
}

}  // namespace talvek::host
