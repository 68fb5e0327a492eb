#include "talvek/preflight/planned_movement.h"

#include <cmath>
#include <cstddef>

#include "talvek.h"
#include "talvek/plan/mode_names.h"
#include "talvek/plan/run_options.h"
#include "talvek/support/messages.h"
#include "weathering/rates.h"

namespace talvek::host {

std::string epochName(std::size_t index) {
    return "epoch " + std::to_string(index + 1);
}

std::optional<double> plannedDelta(const SessionPlan& plan, const PlannedEpoch& planned) {
    const EpochRecord& epoch = planned.record;
    if (!plan.isOffsetting()) {
        return weatheringDelta(plan.material, epoch, plan.model);
    }
    switch (plan.model) {
        case TALVEK_MODEL_CONSTANT_OFFSET:
            return epoch.constantOffset() * epoch.days();
        case TALVEK_MODEL_RANDOM_OFFSET:
            return (std::abs(epoch.meanOffset()) + std::abs(epoch.offsetSpread())) * epoch.days();
        default:
            return epoch.smoothing() == 0 ? std::optional(0.0) : std::nullopt;
    }
}

std::string troubleIn(const SessionPlan& plan, const PlannedEpoch& epoch) {
    const char* const* names = plan.isOffsetting() ? kOffsetOptions : kEnvironmentOptions;
    const std::size_t gases = plan.isOffsetting() ? 0 : plan.model == TALVEK_MODEL_SO2_CRUST ? 1 : 2;
    for (std::size_t slot = 0; slot < TALVEK_EPOCH_PARAMS; ++slot) {
        const double value = epoch.value(slot);
        const std::string is = std::string(names[slot] + 2) + " is " + briefNumber(value);
        if (usesEpochValue(plan.mode, plan.model, slot) && !std::isfinite(value)) {
            return is + ", which is not finite";
        }
        if (slot < gases && value < 0) {
            return is + ", and gases must not be negative";
        }
    }
    return {};
}

}  // namespace talvek::host
