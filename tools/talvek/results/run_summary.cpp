#include "talvek/results/run_summary.h"

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
        say("the frames have vertices of their own, on a grid; displacements by vertex cannot be told");
    } else if (change.isByVertex && change.notFinite < change.vertices) {
        for (const std::string& text : changeTexts(change)) {
            say(text);
        }
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
    printWarnings(change->flaws);
}

/// As a shell takes it for one word.
std::string quoted(const std::string& name) {
    return name.find(' ') == std::string::npos ? name : "\"" + name + "\"";
}

void printWhereNext(const std::string& mesh) {
    const std::string picture = mesh.substr(0, mesh.rfind('.')) + ".png";
    say("look at it: talvek picture " + quoted(mesh) + " -o " + quoted(picture) + "; figures: talvek results " +
        quoted(mesh));
}

/// "a to b", or what there is of it.
std::string keptFrames(const PreparedRun& run) {
    std::int32_t first = 0;
    std::int32_t last = 0;
    std::uint64_t count = 0;
    for (std::int32_t n = 1; n <= run.plan.numEpochs(); ++n) {
        if (run.keepsFrame(n)) {
            first = first == 0 ? n : first;
            last = n;
            ++count;
        }
    }
    if (count == 0) {
        return "none kept";
    }
    const bool areAll = count == static_cast<std::uint64_t>(run.plan.numEpochs());
    return run.files.frame(first) + (count > 1 ? " to " + run.files.frame(last) : "") +
           (areAll ? "" : ", " + std::to_string(count) + " kept");
}

void printFiles(const PreparedRun& run) {
    const std::int32_t epochs = run.plan.numEpochs();
    say(run.files.source + ": " + countOf(static_cast<std::uint64_t>(epochs), "frame") + " over " +
        countOf(run.plan.totalDays(), "day"));
    if (epochs > 0) {
        say("frames: " + keptFrames(run));
    }
    say("first and last surface: " + run.files.firstSurface + ", " + run.files.lastSurface);
    say("run log: " + run.files.log);
}

/// A longer run before this one leaves frames that are not of this run.
void warnOfOlderFrames(const RunFiles& files, const SessionPlan& plan) {
    const std::string next = files.frame(static_cast<std::int32_t>(plan.epochs.size()) + 1);
    if (std::filesystem::exists(pathOf(next))) {
        printWarning(next + " and any frames after it are from an earlier, longer run");
    }
}

}  // namespace

void printSummary(const PreparedRun& run) {
    printFiles(run);
    reportChange(run.files, run.plan);
    printWhereNext(run.files.mesh);
    warnOfOlderFrames(run.files, run.plan);
}

}  // namespace talvek::host
