#include "talvek/plan/planned_movement.h"

#include <cmath>
#include <cstddef>

#include "talvek.h"
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

}  // namespace talvek::host
