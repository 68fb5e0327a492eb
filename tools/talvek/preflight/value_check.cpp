#include "talvek/preflight/value_check.h"

#include <cstddef>
#include <limits>
#include <string>

#include "talvek/plan/planned_movement.h"
#include "talvek/plan/run_options.h"
#include "talvek/support/exit_status.h"
#include "talvek/support/messages.h"

namespace talvek::host {

namespace {

struct Range {
    double smallest;
    double largest;
    const char* sentence;
};

constexpr double kUnbounded = std::numeric_limits<double>::max();

/// SO2, NO2, Rv and RpH.
constexpr Range kEnvironmentRanges[TALVEK_EPOCH_PARAMS] = {
    {0, kUnbounded, "gases must not be negative"},
    {0, kUnbounded, "gases must not be negative"},
    {0, kUnbounded, "rain must not be negative"},
    {0, 14, "a pH lies between 0 and 14"},
};
constexpr Range kMaterialRange = {0, kUnbounded, "no value of a material is negative"};

void requireIn(const Range& range, double value, const std::string& name) {
    if (value < range.smallest || value > range.largest) {
        throw Failure(kExitParameters, name + " is " + briefNumber(value) + ", and " + range.sentence);
    }
}

}  // namespace

void requirePossibleValues(const SessionPlan& plan) {
    if (plan.isOffsetting()) {
        return;
    }
    for (std::size_t i = 0; i < plan.epochs.size(); ++i) {
        for (std::size_t slot = 0; slot < TALVEK_EPOCH_PARAMS; ++slot) {
            requireIn(kEnvironmentRanges[slot], plan.epochs[i].value(slot),
                      epochName(i) + ": " + (kEnvironmentOptions[slot] + 2));
        }
    }
    for (std::size_t i = 0; i < plan.material.values.size(); ++i) {
        requireIn(kMaterialRange, plan.material.values[i], kMaterialNames[i]);
    }
}

}  // namespace talvek::host
