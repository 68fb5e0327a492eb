#include "talvek/commands/run_command.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <cstdio>
#include <memory>

#include "api/session/log_lines.h"
#include "base/run_file_names.h"
#include "talvek/engine/host_session.h"
#include "talvek/formats/mesh_file.h"
#include "talvek/plan/run_files.h"
#include "talvek/plan/session_plan.h"
#include "talvek/preflight/log_check.h"
#include "talvek/preflight/movement_check.h"
#include "talvek/preflight/movement_warnings.h"
#include "talvek/preflight/option_check.h"
#include "talvek/preflight/preflight.h"
#include "talvek/preflight/texture_check.h"
#include "talvek/results/run_summary.h"
#include "talvek/support/exit_status.h"
#include "talvek/support/messages.h"
#include "talvek/support/paths.h"
#include "talvek/watch/child_process.h"
#include "talvek/watch/frame_check.h"
#include "talvek/watch/library_lines.h"
#include "talvek/watch/progress.h"

namespace talvek::host {

namespace {

// The commands with which this program starts itself; they take the arguments of `run`.
constexpr const char* kDescribeCommand = "describe-session";
constexpr const char* kSessionCommand = "run-session";

std::vector<std::string> childCommand(const char* command, const std::vector<std::string>& arguments) {
    std::vector<std::string> all = {programPath(), command};
    all.insert(all.end(), arguments.begin(), arguments.end());
    return all;
}

template <typename Take>
void readAll(ChildProcess& child, Take take) {
    std::array<char, 4096> piece{};
    while (const std::size_t got = child.readOutput(piece.data(), piece.size())) {
        take(std::string_view(piece.data(), got));
    }
}

/// Throws Failure for an end that none of this program's own commands has.
void requireRegularEnd(const ChildEnd& end) {
    const bool isOurs = end.isRegular && end.code <= kExitCrashed;
    if (!isOurs) {
        throw Failure(kExitCrashed, "the simulation ended unexpectedly: its process " + end.describe() +
                                        "; if there was not enough memory, try a smaller mesh");
    }
}

SessionPlan askForPlan(const std::vector<std::string>& arguments, int& status) {
    ChildProcess child(childCommand(kDescribeCommand, arguments));
    std::string output;
    readAll(child, [&output](std::string_view piece) { output += piece; });
    const ChildEnd end = child.wait();
    requireRegularEnd(end);
    status = static_cast<int>(end.code);
    std::optional<SessionPlan> plan = readPlan(output);
    if (status == kExitDone && !plan) {
        throw Failure(kExitInternal, "the simulation's process did not say what it was going to do");
    }
    return plan.value_or(SessionPlan());
}

/// What a run needs to know once it has been found possible.
struct PreparedRun {
    RunFiles files;
    SessionPlan plan;
    bool withInputFrame;
    std::optional<ExpectedCounts> counts;

    std::int32_t numEpochs() const { return static_cast<std::int32_t>(plan.epochs.size()); }
    std::vector<std::string> outputs() const { return outputFiles(files, numEpochs(), withInputFrame); }
};

PreparedRun prepare(const RunOptions& options, const SessionPlan& plan) {
    PreparedRun run{RunFiles(options.mesh), plan, options.keepInputFrame, std::nullopt};
    printWarnings(replacedChoices(plan, options));
    requireDefinedPair(plan, options);
    requireFreeLog(options, run.files, run.numEpochs());
    if (lowerCaseExtension(options.mesh) == ".ply") {
        throw Failure(kExitMesh,
                      options.mesh + ": the simulation does not read PLY files; talvek convert makes an OBJ of it");
    }
    const std::unique_ptr<Object3D> mesh = readMesh(options.mesh);
    requireSuitableMesh(plan, *mesh, run.files);
    requireFiniteDeltas(plan);
    const std::optional<MapToPlace> map = requireMineralMap(plan, options, run.files);
    requireRoom(plan, *mesh, run.files, run.withInputFrame, map ? map->bytes.size() : 0);
    printWarnings({textureWarning(plan.mode, *mesh)});
    printWarnings(movementWarnings(plan, *mesh));
    if (plan.keepsVertices()) {
        run.counts = ExpectedCounts{mesh->numVertices, mesh->numFaces};
    }
    if (map) {
        placeMap(*map);
    }
    return run;
}

std::size_t countNewFrames(const PreparedRun& run, const FrameCheck& frames) {
    std::size_t count = 0;
    for (std::int32_t n = 1; n <= run.numEpochs(); ++n) {
        count += frames.isNew(run.files.frame(n)) ? 1 : 0;
    }
    return count;
}

/// The library goes on without a map that it cannot read, and the stone would be another one. Throws Failure then.
void requireMapWasLoaded(std::string_view line, const RunFiles& files) {
    if (line.starts_with(kMapLineStart) && line.ends_with(kMapNotLoadedEnd)) {
        throw Failure(kExitRefused, files.mineralMap +
                                        ": the mineral map was usable before the run, and the library could not read "
                                        "it any more; what this run has written is that of a stone without a map; look "
                                        "whether another program changes the file, and run again");
    }
}

/// Runs the child and checks every frame as soon as the next epoch begins. Returns the child's exit status.
int runChild(const PreparedRun& run, const RunOptions& options, const std::vector<std::string>& arguments,
             FrameCheck& frames) {
    ProgressLine progress(run.numEpochs(), hasTerminal() && !options.isVerbose);
    LibraryLines lines(options.log, options.isVerbose, [&](std::string_view line) {
        requireMapWasLoaded(line, run.files);
        if (const std::optional<std::int32_t> epoch = announcedEpoch(line)) {
            progress.show(*epoch);
            if (*epoch > 1) {
                frames.check(run.files.frame(*epoch - 1));
            }
        }
    });
    ChildProcess child(childCommand(kSessionCommand, arguments));
    const CancelGuard guard(child);
    try {
        readAll(child, [&lines](std::string_view piece) { lines.feed(piece); });
    } catch (const Failure&) {
        child.kill();
        child.wait();
        removeUnfinishedFiles(run.files.folder, child.id());
        if (!guard.isCancelled()) {
            throw;
        }
    }
    const ChildEnd end = child.wait();
    removeUnfinishedFiles(run.files.folder, child.id());
    progress.clear();
    if (guard.isCancelled()) {
        throw Failure(kExitCancelled, "cancelled; " + countOf(countNewFrames(run, frames), "frame") + " of " +
                                          std::to_string(run.numEpochs()) + " written, all of them whole");
    }
    requireRegularEnd(end);
    return static_cast<int>(end.code);
}

void checkOutputs(const PreparedRun& run, FrameCheck& frames) {
    // The frames before the last have been checked on the way.
    std::vector<std::string> names = run.outputs();
    const std::int32_t checked = std::max(run.numEpochs() - 1, 0);
    const auto firstFrame = names.begin() + (run.withInputFrame ? 1 : 0);
    names.erase(firstFrame, firstFrame + checked);
    for (const std::string& name : names) {
        frames.check(name);
    }
}

int runCommand(const RunOptions& options, const std::vector<std::string>& arguments) {
    if (!options.config.empty() && !options.config.ends_with(kParametersExtension)) {
        throw Failure(kExitUsage, options.config + ": the name of a parameter file ends in .cfg; rename it");
    }
    int status = kExitDone;
    const SessionPlan plan = askForPlan(arguments, status);
    if (status != kExitDone) {
        return status;
    }
    const PreparedRun run = prepare(options, plan);
    FrameCheck frames(run.outputs(), run.counts);
    status = runChild(run, options, arguments, frames);
    if (status != kExitDone) {
        return status;
    }
    checkOutputs(run, frames);
    printSummary(run.files, run.plan);
    return kExitDone;
}

}  // namespace

void addRunCommands(CommandSet& commands, const std::vector<std::string>& arguments) {
    const auto options = std::make_shared<RunOptions>();
    addRunArguments(commands.add("run", "Weather a mesh, one frame for every epoch",
                                 [options, arguments] {
                                     return runCommand(*options, {arguments.begin() + 1, arguments.end()});
                                 }),
                    *options);
    addRunArguments(commands.addHidden(kDescribeCommand, [options] { return describeSession(*options); }), *options);
    addRunArguments(commands.addHidden(kSessionCommand, [options] { return runSession(*options); }), *options);
}

}  // namespace talvek::host
