#include "talvek/movement_check.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <limits>

#include "talvek/exit_status.h"
#include "talvek/messages.h"
#include "talvek/run_options.h"
#include "weathering/rates.h"

namespace talvek::host {

namespace {

constexpr double kLargest = std::numeric_limits<float>::max();

bool isOffsetting(const SessionPlan& plan) {
    return plan.mode == TALVEK_MODE_OFFSETTING;
}

EpochRecord recordOf(const PlannedEpoch& planned) {
    EpochRecord epoch{};
    epoch.values[0] = planned.days;
    std::copy(planned.environment.begin(), planned.environment.end(), epoch.values.begin() + 1);
    return epoch;
}

std::string epochName(std::size_t index) {
    return "epoch " + std::to_string(index + 1);
}

bool isHeld(double amount) {
    return std::abs(amount) <= kLargest;
}

/// What is wrong with a value of an epoch; empty where nothing is.
std::string troubleIn(const SessionPlan& plan, const PlannedEpoch& epoch) {
    const char* const* names = isOffsetting(plan) ? kOffsetOptions : kEnvironmentOptions;
    const std::size_t gases = isOffsetting(plan) ? 0 : plan.model == TALVEK_MODEL_SO2_CRUST ? 1 : 2;
    for (std::size_t slot = 0; slot < epoch.environment.size(); ++slot) {
        const float value = epoch.environment[slot];
        const std::string is = std::string(names[slot] + 2) + " is " + briefNumber(static_cast<double>(value));
        if (!std::isfinite(value)) {
            return is + ", which is not finite";
        }
        if (slot < gases && value < 0) {
            return is + ", and gases must not be negative";
        }
    }
    return {};
}

/// What to look for where an epoch's movement is not finite.
std::string adviceOn(const SessionPlan& plan, const PlannedEpoch& epoch) {
    const std::string trouble = troubleIn(plan, epoch);
    if (!trouble.empty()) {
        return trouble;
    }
    return isOffsetting(plan) ? "choose a smaller offset or fewer days"
                              : "look for a material value of 0 that divides, or for a value in the wrong unit";
}

void requireFiniteDelta(const SessionPlan& plan, std::size_t index, double delta) {
    if (!isHeld(delta)) {
        const std::string amount = std::isnan(delta) ? "an amount that is not a number"
                                                     : briefNumber(delta) + " mm, which no coordinate can hold";
        throw Failure(kExitRefused, epochName(index) + " would move the surface by " + amount + "; " +
                                        adviceOn(plan, plan.epochs[index]));
    }
}

void requireFiniteSum(const SessionPlan& plan, std::size_t index, double sum) {
    if (!isHeld(sum)) {
        throw Failure(kExitRefused, epochName(index) + " would have moved the surface by " + briefNumber(sum) +
                                        " mm in all, which no coordinate can hold; " +
                                        (isOffsetting(plan) ? "choose smaller offsets or fewer days"
                                                            : adviceOn(plan, plan.epochs[index])));
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

using Axes = std::array<double, 3>;

/// The largest |x|, |y| and |z| of a mesh that are finite.
Axes largestCoordinates(const Object3D& mesh) {
    Axes largest{};
    for (std::size_t i = 0; i < mesh.vertexSpan().size(); ++i) {
        const double size = std::abs(static_cast<double>(mesh.vertexSpan()[i]));
        largest[i % 3] = std::isfinite(size) ? std::max(largest[i % 3], size) : largest[i % 3];
    }
    return largest;
}

/// How far apart the single-precision numbers behind a coordinate are.
double spacingAt(double coordinate) {
    const auto number = static_cast<float>(coordinate);
    return static_cast<double>(std::nextafter(number, std::numeric_limits<float>::infinity())) - coordinate;
}

/// " along x and y"; empty for all three axes.
std::string lostAxes(const Axes& largest, double delta) {
    std::string axes;
    std::size_t count = 0;
    for (std::size_t k = 0; k < largest.size(); ++k) {
        if (std::abs(delta) < spacingAt(largest[k])) {
            axes += (count++ == 0 ? " along " : " and ") + std::string(1, "xyz"[k]);
        }
    }
    return count == largest.size() ? "" : axes;
}

/// Epochs of one kind among those of a plan.
struct FoundEpochs {
    std::size_t count = 0;
    std::size_t first = 0;
    double firstDelta = 0;

    void add(std::size_t index, double delta) {
        if (count++ == 0) {
            first = index;
            firstDelta = delta;
        }
    }
};

std::string stillText(const FoundEpochs& still, std::size_t epochs) {
    if (epochs == 1) {
        return epochName(0) + " moves the surface by 0 mm: nothing will move";
    }
    if (still.count == epochs) {
        return "all " + std::to_string(epochs) + " epochs move the surface by 0 mm: nothing will move";
    }
    return std::to_string(still.count) + " of " + std::to_string(epochs) + " epochs" +
           (still.count == 1 ? " moves the surface by 0 mm: " : " move the surface by 0 mm, the first of them ") +
           epochName(still.first);
}

std::string stillWarning(const FoundEpochs& still, const SessionPlan& plan) {
    const std::string trouble = troubleIn(plan, plan.epochs[still.first]);
    return stillText(still, plan.epochs.size()) + (trouble.empty() ? "" : "; " + trouble);
}

std::string sizeOf(const Object3D& mesh) {
    const BoundingBox box = boundingBox(mesh);
    return briefNumber(static_cast<double>(box.xmax - box.xmin)) + " x " +
           briefNumber(static_cast<double>(box.ymax - box.ymin)) + " x " +
           briefNumber(static_cast<double>(box.zmax - box.zmin)) + " mm";
}

std::string roundingWarning(const FoundEpochs& lost, const SessionPlan& plan, const Object3D& mesh,
                            const Axes& largest) {
    const double farthest = *std::ranges::max_element(largest);
    const bool isRandom = isOffsetting(plan) && plan.model == TALVEK_MODEL_RANDOM_OFFSET;
    return countOf(lost.count, "epoch") + " of " + std::to_string(plan.epochs.size()) + " may move nothing" +
           lostAxes(largest, lost.firstDelta) + ": " + epochName(lost.first) + " moves the surface by " +
           (isRandom ? "about " : "") + briefNumber(lost.firstDelta) +
           (isRandom ? " mm at most (mean plus spread)" : " mm") + ", and at this mesh's coordinates (up to " +
           briefNumber(farthest) + " mm, size " + sizeOf(mesh) + ") single-precision numbers are " +
           briefNumber(spacingAt(farthest)) + " mm apart; use longer epochs, or move the mesh nearer to the origin";
}

}  // namespace

std::optional<double> plannedDelta(const SessionPlan& plan, const PlannedEpoch& planned) {
    const EpochRecord epoch = recordOf(planned);
    if (!isOffsetting(plan)) {
        MaterialRecord material{};
        std::copy(plan.material.begin(), plan.material.end(), material.values.begin());
        return weatheringDelta(material, epoch, plan.model);
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

void requireFiniteDeltas(const SessionPlan& plan) {
    double sum = 0;
    for (std::size_t i = 0; i < plan.epochs.size(); ++i) {
        if (const std::optional<double> delta = plannedDelta(plan, plan.epochs[i])) {
            sum += *delta;
            requireFiniteDelta(plan, i, *delta);
            requireFiniteSum(plan, i, sum);
        } else {
            requireFiniteSmoothing(i, recordOf(plan.epochs[i]));
        }
    }
}

std::vector<std::string> movementWarnings(const SessionPlan& plan, const Object3D& mesh) {
    const Axes largest = largestCoordinates(mesh);
    const double spacing = spacingAt(*std::ranges::max_element(largest));
    FoundEpochs still;
    FoundEpochs lost;
    for (std::size_t i = 0; i < plan.epochs.size(); ++i) {
        const std::optional<double> delta = plannedDelta(plan, plan.epochs[i]);
        if (delta && *delta == 0) {
            still.add(i, *delta);
        } else if (delta && std::abs(*delta) < spacing) {
            lost.add(i, *delta);
        }
    }
    std::vector<std::string> warnings;
    if (still.count > 0) {
        warnings.push_back(stillWarning(still, plan));
    }
    if (lost.count > 0) {
        warnings.push_back(roundingWarning(lost, plan, mesh, largest));
    }
    return warnings;
}

}  // namespace talvek::host
