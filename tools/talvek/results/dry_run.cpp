#include "talvek/results/dry_run.h"

#include <cmath>
#include <optional>
#include <string>

#include "talvek/plan/mode_names.h"
#include "talvek/plan/planned_movement.h"
#include "talvek/support/messages.h"
#include "talvek/support/paths.h"

namespace talvek::host {

namespace {

// Longer lists are for talvek rates, which prints them as a table.
constexpr std::size_t kMostShown = 12;

std::string valuesText(const SessionPlan& plan, const PlannedEpoch& epoch) {
    const char* const* names = plan.isOffsetting() ? kOffsetOptions : kEnvironmentOptions;
    std::string text;
    for (std::size_t slot = 0; slot < TALVEK_EPOCH_PARAMS; ++slot) {
        if (!plan.isOffsetting() || usesEpochValue(plan.mode, plan.model, slot)) {
            text += std::string(", ") + (names[slot] + 2) + " " + briefNumber(epoch.value(slot));
        }
    }
    return text;
}

void printEpochs(const SessionPlan& plan) {
    for (std::size_t i = 0; i < plan.epochs.size(); ++i) {
        if (i == kMostShown) {
            say("  and " + countOf(plan.epochs.size() - i, "epoch") + " more");
            return;
        }
        const PlannedEpoch& epoch = plan.epochs[i];
        const std::optional<double> delta = plannedDelta(plan, epoch);
        say("  epoch " + std::to_string(i + 1) + ": " + briefNumber(epoch.record.days()) + " days" +
            valuesText(plan, epoch) + (delta ? "; " + briefNumber(*delta) + " mm" : ""));
    }
}

/// Moving the surface and writing and reading a frame takes a machine of these days about so long for a vertex.
constexpr double kSecondsForAVertex = 1.5e-6;
// A frame of mode 2 has as many vertices as its grid has points.
constexpr double kGridVertices = 460.0 * 460.0;

double expectedSeconds(const PreparedRun& run) {
    const double vertices = run.plan.keepsVertices() ? static_cast<double>(run.mesh->numVertices) : kGridVertices;
    return kSecondsForAVertex * vertices * (run.plan.numEpochs() + 2);
}

}  // namespace

void printDryRun(const PreparedRun& run) {
    say(run.files.source + ": " + modeName(run.plan.mode) + ", " + modelName(run.plan.mode, run.plan.model) + ", " +
        countOf(run.plan.epochs.size(), "epoch") + " over " + countOf(run.plan.totalDays(), "day"));
    printEpochs(run.plan);
    say("files: " + nameOf(run.files.folder) + ", about " + byteCount(static_cast<double>(run.bytesNeeded)));
    say("time: about " + clockTime(static_cast<std::uint64_t>(std::ceil(expectedSeconds(run)))));
    say("nothing was done (--dry-run)");
}

}  // namespace talvek::host
