#include "talvek/preflight/movement_check.h"

#include <cmath>
#include <cstddef>
#include <limits>
#include <optional>
#include <string>

#include "talvek/plan/planned_movement.h"
#include "talvek/support/exit_status.h"
#include "talvek/support/messages.h"

namespace talvek::host {

namespace {

constexpr double kLargest = std::numeric_limits<float>::max();

bool isHeld(double amount) {
    return std::abs(amount) <= kLargest;
}

/// What to look for where an epoch's movement is not finite.
std::string adviceOn(const SessionPlan& plan) {
    return plan.isOffsetting() ? "choose a smaller offset or fewer days"
                               : "look for a material value of 0 that divides, or for a value in the wrong unit";
}

void requireFiniteDelta(const SessionPlan& plan, std::size_t index, double delta) {
    if (!isHeld(delta)) {
        const std::string amount = std::isnan(delta) ? "an amount that is not a number"
                                                     : briefNumber(delta) + " mm, which no coordinate can hold";
        throw Failure(kExitRefused, epochName(index) + " would move the surface by " + amount + "; " + adviceOn(plan));
    }
}

void requireFiniteSum(const SessionPlan& plan, std::size_t index, double sum) {
    if (!isHeld(sum)) {
        throw Failure(kExitRefused,
                      epochName(index) + " would have moved the surface by " + briefNumber(sum) +
                          " mm in all, which no coordinate can hold; " +
                          (plan.isOffsetting() ? "choose smaller offsets or fewer days" : adviceOn(plan)));
    }
}

void requireFiniteSmoothing(std::size_t index, const EpochRecord& epoch) {
    const double amount = epoch.smoothing() * epoch.days();
    if (!isHeld(amount)) {
        throw Failure(kExitRefused, epochName(index) + ": a smoothing amount of " + briefNumber(epoch.smoothing()) +
                                        " over " + countOf(static_cast<std::uint64_t>(epoch.days()), "day") +
                                        " gives " + briefNumber(amount) +
                                        ", which single-precision numbers do not hold; choose a smaller one or fewer "
                                        "days");
    }
}

}  // namespace

void requireFiniteDeltas(const SessionPlan& plan) {
    double sum = 0;
    for (std::size_t i = 0; i < plan.epochs.size(); ++i) {
        if (const std::optional<double> delta = plannedDelta(plan, plan.epochs[i])) {
            sum += *delta;
            requireFiniteDelta(plan, i, *delta);
            requireFiniteSum(plan, i, sum);
        } else {
            requireFiniteSmoothing(i, plan.epochs[i].record);
        }
    }
}

}  // namespace talvek::host
