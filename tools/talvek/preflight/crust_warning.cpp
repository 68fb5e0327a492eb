#include "talvek/preflight/crust_warning.h"

#include <algorithm>

#include "talvek/plan/mode_names.h"
#include "talvek/plan/planned_movement.h"
#include "talvek/support/messages.h"

namespace talvek::host {

namespace {

bool isCrustModel(const SessionPlan& plan) {
    return !plan.isOffsetting() && (plan.model == TALVEK_MODEL_SO2_CRUST || plan.model == TALVEK_MODEL_SO2_NO2_CRUST);
}

bool haveSameAir(const SessionPlan& plan) {
    const PlannedEpoch& first = plan.epochs.front();
    return std::ranges::all_of(plan.epochs, [&first](const PlannedEpoch& epoch) {
        return std::equal(epoch.record.values.begin() + 1, epoch.record.values.end(), first.record.values.begin() + 1);
    });
}

/// The plan's epochs as one.
PlannedEpoch joinedEpoch(const SessionPlan& plan) {
    PlannedEpoch joined = plan.epochs.front();
    for (std::size_t i = 1; i < plan.epochs.size(); ++i) {
        joined.record.values[0] += plan.epochs[i].record.days();
    }
    return joined;
}

double totalMovement(const SessionPlan& plan) {
    double sum = 0;
    for (const PlannedEpoch& epoch : plan.epochs) {
        sum += plannedDelta(plan, epoch).value_or(0);
    }
    return sum;
}

}  // namespace

std::string crustWarning(const SessionPlan& plan) {
    if (!isCrustModel(plan) || plan.epochs.size() < 2) {
        return {};
    }
    std::string text =
        modelName(plan.mode, plan.model) +
        " takes the stone to be bare at the beginning of every epoch: " + std::to_string(plan.epochs.size()) +
        " epochs grow a crust of " + briefNumber(totalMovement(plan)) + " mm in all";
    if (haveSameAir(plan)) {
        text += ", and one epoch of " + countOf(plan.totalDays(), "day") + " would grow " +
                briefNumber(plannedDelta(plan, joinedEpoch(plan)).value_or(0)) + " mm";
    }
    return text + "; take one epoch for as long as the air stays the same";
}

}  // namespace talvek::host
