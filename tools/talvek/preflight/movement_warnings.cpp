#include "talvek/preflight/movement_warnings.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <optional>

#include "talvek/inspect/mesh_size.h"
#include "talvek/plan/planned_movement.h"
#include "talvek/support/messages.h"

namespace talvek::host {

namespace {

using Axes = std::array<double, 3>;

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

std::string roundingWarning(const FoundEpochs& lost, const SessionPlan& plan, const Object3D& mesh,
                            const Axes& largest) {
    const double farthest = *std::ranges::max_element(largest);
    const bool isRandom = plan.isOffsetting() && plan.model == TALVEK_MODEL_RANDOM_OFFSET;
    return countOf(lost.count, "epoch") + " of " + std::to_string(plan.epochs.size()) + " may move nothing" +
           lostAxes(largest, lost.firstDelta) + ": " + epochName(lost.first) + " moves the surface by " +
           (isRandom ? "about " : "") + briefNumber(lost.firstDelta) +
           (isRandom ? " mm at most (mean plus spread)" : " mm") + ", and at this mesh's coordinates (up to " +
           briefNumber(farthest) + " mm, size " + sizeOf(mesh).text() + ") single-precision numbers are " +
           briefNumber(spacingAt(farthest)) + " mm apart; use longer epochs, or move the mesh nearer to the origin";
}

}  // namespace

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
        warnings.push_back(stillText(still, plan.epochs.size()));
    }
    if (lost.count > 0) {
        warnings.push_back(roundingWarning(lost, plan, mesh, largest));
    }
    return warnings;
}

}  // namespace talvek::host
