#include "talvek/watch/simulation.h"

#include <array>
#include <string_view>

#include "api/session/log_lines.h"
#include "base/output_file.h"
#include "base/pending_file.h"
#include "base/run_file_names.h"
#include "base/system.h"
#include "talvek/support/exit_status.h"
#include "talvek/support/messages.h"
#include "talvek/support/paths.h"
#include "talvek/watch/child_process.h"
#include "talvek/watch/library_lines.h"
#include "talvek/watch/progress.h"

namespace talvek::host {

namespace {

/// How the plan's file is called on its way to the child, which removes it when it has read it.
std::string planName(const PreparedRun& run) {
    return nameOf(run.files.folder / (std::string(kUnfinishedPrefix) + std::to_string(system::processId()) + "-plan" +
                                      std::string(kParametersExtension)));
}

void writePlan(const SessionPlan& plan, const std::string& name) {
    OutputFile file(name.c_str());
    file.write(parameterText(plan));
    if (!file.finish()) {
        throw Failure(kExitOutput, name + ": the plan of the run cannot be written; look for room on the disk");
    }
}

std::vector<std::string> childCommand(const PreparedRun& run, const RunOptions& options, const std::string& plan) {
    std::vector<std::string> command = {programPath(), kSessionCommand, run.files.mesh, plan};
    if (run.keepInputFrame) {
        command.emplace_back("--keep-input-frames");
    }
    if (options.saveConfig) {
        command.emplace_back("--save-config");
    }
    return command;
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

std::size_t countNewFrames(const PreparedRun& run, const FrameCheck& frames) {
    std::size_t count = 0;
    for (std::int32_t n = 1; n <= run.plan.numEpochs(); ++n) {
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

ProgressKind progressFor(const RunOptions& options) {
    if (options.isVerbose || options.isQuiet || options.asJson) {
        return ProgressKind::kNone;
    }
    return hasTerminal() ? ProgressKind::kTerminal : ProgressKind::kLines;
}

}  // namespace

int simulate(const PreparedRun& run, const RunOptions& options, const FrameCheck& frames,
             const std::function<void(std::int32_t number)>& takeFrame) {
    const std::int32_t numEpochs = run.plan.numEpochs();
    ProgressLine progress(numEpochs, progressFor(options));
    LibraryLines lines(options.log, options.isVerbose, [&](std::string_view line) {
        requireMapWasLoaded(line, run.files);
        if (const std::optional<std::int32_t> epoch = announcedEpoch(line)) {
            progress.show(*epoch);
            if (*epoch > 1) {
                takeFrame(*epoch - 1);
            }
        }
    });
    const ScratchFile planFile(planName(run));
    writePlan(run.plan, planFile.name());
    ChildProcess child(childCommand(run, options, planFile.name()));
    const CancelGuard guard(child);
    try {
        readAll(child, [&lines](std::string_view piece) { lines.feed(piece); });
    } catch (const Failure&) {
        child.kill();
        child.wait();
        removeAbandonedFilesBeside(run.files.mesh.c_str());
        if (!guard.isCancelled()) {
            throw;
        }
    }
    const ChildEnd end = child.wait();
    removeAbandonedFilesBeside(run.files.mesh.c_str());
    progress.clear();
    if (guard.isCancelled()) {
        throw Failure(kExitCancelled, "cancelled; " + countOf(countNewFrames(run, frames), "frame") + " of " +
                                          std::to_string(numEpochs) + " written, all of them whole");
    }
    requireRegularEnd(end);
    return static_cast<int>(end.code);
}

}  // namespace talvek::host
