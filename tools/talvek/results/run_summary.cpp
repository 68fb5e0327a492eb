#include "talvek/results/run_summary.h"

#include <cstdio>
#include <filesystem>
#include <optional>
#include <string>

#include "talvek/results/surface_change.h"
#include "talvek/support/exit_status.h"
#include "talvek/support/messages.h"
#include "talvek/support/paths.h"

namespace talvek::host {

namespace {

/// In mode 2 the frames' vertices are those of a grid.
void printDisplacement(const SessionPlan& plan, const SurfaceChange& change) {
    if (!plan.keepsVertices()) {
        std::printf("the frames have vertices of their own, on a grid; displacements by vertex cannot be told\n");
    } else if (change.isByVertex && change.notFinite < change.vertices) {
        std::printf("the surface moved by %s mm on average, by %s mm at most\n", briefNumber(change.mean).c_str(),
                    briefNumber(change.largest).c_str());
    }
}

/// Vertices without a finite position are what the library gives, but no surface is left when all are.
void reportChange(const RunFiles& files, const SessionPlan& plan) {
    const std::optional<SurfaceChange> change = compareSurfaces(files.firstSurface, files.lastSurface);
    if (!change) {
        return;
    }
    printDisplacement(plan, *change);
    const bool isSmoothed = plan.isOffsetting() && plan.model == TALVEK_MODEL_SMOOTHING;
    const std::string text = notFiniteText(*change, isSmoothed);
    if (change->notFinite > 0 && change->notFinite == change->vertices) {
        throw Failure(kExitFrame, files.lastSurface + ": " + text);
    }
    printWarnings({text});
}

void printFiles(const RunFiles& files, const SessionPlan& plan) {
    const std::int32_t epochs = static_cast<std::int32_t>(plan.epochs.size());
    std::printf("%s: %s over %s\n", files.mesh.c_str(), countOf(static_cast<std::uint64_t>(epochs), "frame").c_str(),
                countOf(plan.totalDays(), "day").c_str());
    if (epochs > 0) {
        std::printf("frames: %s%s%s\n", files.frame(1).c_str(), epochs > 1 ? " to " : "",
                    epochs > 1 ? files.frame(epochs).c_str() : "");
    }
    std::printf("first and last surface: %s, %s\nrun log: %s\n", files.firstSurface.c_str(), files.lastSurface.c_str(),
                files.log.c_str());
}

/// A longer run before this one leaves frames that are not of this run.
void warnOfOlderFrames(const RunFiles& files, const SessionPlan& plan) {
    const std::string next = files.frame(static_cast<std::int32_t>(plan.epochs.size()) + 1);
    if (std::filesystem::exists(pathOf(next))) {
        printWarning(next + " and any frames after it are from an earlier, longer run");
    }
}

}  // namespace

void printSummary(const RunFiles& files, const SessionPlan& plan) {
    printFiles(files, plan);
    reportChange(files, plan);
    warnOfOlderFrames(files, plan);
}

}  // namespace talvek::host
