#include "talvek/commands/run_command.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <memory>

#include "talvek/engine/host_session.h"
#include "talvek/plan/plan_making.h"
#include "talvek/preflight/preparation.h"
#include "talvek/results/run_summary.h"
#include "talvek/support/exit_status.h"
#include "talvek/watch/frame_check.h"
#include "talvek/watch/simulation.h"

namespace talvek::host {

namespace {

void checkOutputs(const PreparedRun& run, FrameCheck& frames) {
    // The frames before the last have been checked on the way.
    std::vector<std::string> names = run.outputs();
    const std::int32_t checked = std::max(run.plan.numEpochs() - 1, 0);
    const auto firstFrame = names.begin() + (run.keepInputFrame ? 1 : 0);
    names.erase(firstFrame, firstFrame + checked);
    for (const std::string& name : names) {
        frames.check(name);
    }
}

int runCommand(const RunOptions& options) {
    if (!options.config.empty() && !options.config.ends_with(".cfg")) {
        throw Failure(kExitUsage, options.config + ": the name of a parameter file ends in .cfg; rename it");
    }
    const PreparedRun run = prepareRun(options, makePlan(options));
    FrameCheck frames(run.outputs(), run.counts);
    const int status = simulate(run, options, frames);
    if (status != kExitDone) {
        return status;
    }
    checkOutputs(run, frames);
    printSummary(run.files, run.plan);
    return kExitDone;
}

void addSessionCommand(CommandSet& commands) {
    const auto order = std::make_shared<SessionOrder>();
    CLI::App& session = commands.addHidden(kSessionCommand, [order] { return runSession(*order); });
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
