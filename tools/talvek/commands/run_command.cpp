#include "talvek/commands/run_command.h"

#include <CLI/CLI.hpp>
#include <memory>

#include "base/system.h"
#include "talvek/commands/view_command.h"
#include "talvek/engine/host_session.h"
#include "talvek/plan/plan_making.h"
#include "talvek/preflight/placement.h"
#include "talvek/preflight/preparation.h"
#include "talvek/results/dry_run.h"
#include "talvek/results/run_events.h"
#include "talvek/results/run_recorder.h"
#include "talvek/results/run_summary.h"
#include "talvek/support/exit_status.h"
#include "talvek/support/messages.h"
#include "talvek/watch/child_process.h"
#include "talvek/watch/frame_check.h"
#include "talvek/watch/run_lock.h"
#include "talvek/watch/simulation.h"

namespace talvek::host {

namespace {

void requireOptionsThatGoTogether(const RunOptions& options) {
    if (!options.config.empty() && !options.config.ends_with(".cfg")) {
        throw Failure(kExitUsage, options.config + ": the name of a parameter file ends in .cfg; rename it");
    }
}

/// Runs the library and takes down every frame as it is complete. Returns the library's exit status.
int runAndRecord(const PreparedRun& run, const RunOptions& options, RunRecorder& recorder, const RunEvents& events) {
    FrameCheck frames(run.outputs(), run.counts);
    const auto takeFrame = [&](std::int32_t number) {
        const std::string name = run.files.frame(number);
        recorder.addFrame(number, *frames.check(name));
        events.epoch(recorder.record(), number);
        if (!run.keepsFrame(number)) {
            system::removeFile(name.c_str());
        }
    };
    const int status = simulate(run, options, frames, takeFrame);
    if (status != kExitDone) {
        return status;
    }
    if (run.plan.numEpochs() > 0) {
        takeFrame(run.plan.numEpochs());
    }
    for (const std::string& name : surfacesOf(run)) {
        frames.check(name);
    }
    return kExitDone;
}

int runPrepared(const PreparedRun& run, const RunOptions& options, const RunEvents& events) {
    RunRecorder recorder(run, options);
    recorder.begin();
    events.plan(recorder.record(), run);
    int status = kExitDone;
    try {
        status = runAndRecord(run, options, recorder, events);
    } catch (const Failure& failure) {
        recorder.end(failure.status() == kExitCancelled ? RunOutcome::kCancelled : RunOutcome::kFailed);
        throw;
    }
    if (status != kExitDone) {
        recorder.end(RunOutcome::kFailed);
        return status;
    }
    printSummary(run);
    recorder.end(RunOutcome::kWhole);
    events.results(recorder.record(), run.files.record);
    if (options.withPage) {
        ViewOptions page;
        page.run = run.files.record;
        viewRun(page);
    }
    return kExitDone;
}

int runWithEvents(const RunOptions& options, const RunEvents& events) {
    const PreparedRun run = prepareRun(options, makePlan(options));
    if (options.isDryRun) {
        printDryRun(run);
        RunEvents(options.asJson).plan(RunRecorder(run, options).record(), run);
        return kExitDone;
    }
    makeFolder(run.files);
    const RunLock lock(run.files);
    placeInputs(run);
    return runPrepared(run, options, events);
}

int runCommand(const RunOptions& options) {
    requireOptionsThatGoTogether(options);
    if (options.isQuiet || options.asJson) {
        keepSilent();
    }
    const RunEvents events(options.asJson);
    try {
        return runWithEvents(options, events);
    } catch (const Failure& failure) {
        events.failure(failure.status(), failure.what());
        throw;
    }
}

void addSessionCommand(CommandSet& commands) {
    const auto order = std::make_shared<SessionOrder>();
    CLI::App& session = commands.addHidden(kSessionCommand, [order] {
        endWithParent();
        return runSession(*order);
    });
    addFileArgument(session, order->mesh, "MESH", "");
    addFileArgument(session, order->plan, "PLAN", "");
    session.add_flag("--keep-input-frames", order->keepInputFrame);
    session.add_flag("--save-config", order->saveConfig);
}

}  // namespace

void addRunCommands(CommandSet& commands) {
    const auto options = std::make_shared<RunOptions>();
    addRunArguments(
        commands.add("run", "Weather a mesh, one frame for every epoch", [options] { return runCommand(*options); }),
        *options);
    addSessionCommand(commands);
}

}  // namespace talvek::host
