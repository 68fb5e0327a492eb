#include "talvek/commands/results_command.h"

#include <CLI/CLI.hpp>
#include <cstdio>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>

#include "talvek/results/figure_table.h"
#include "talvek/support/exit_status.h"

namespace talvek::host {

namespace {

struct ResultsOptions {
    std::string mesh;
    bool asCsv = false;
    bool asJson = false;
    bool byMineral = false;
};

std::string resultsText(const RunSeries& series, const ResultsOptions& options) {
    const std::vector<EpochFigures> epochs = measureEpochs(series);
    if (options.byMineral && epochs.front().minerals.empty()) {
        throw Failure(kExitRefused, options.mesh +
                                        ": minerals are told of runs in mode 3 (grain-weaver) whose mesh and mineral "
                                        "map are still there");
    }
    if (options.asJson) {
        return jsonOf(series, epochs).dump(2) + "\n";
    }
    return options.byMineral ? mineralCsvOf(epochs) : options.asCsv ? csvOf(epochs) : textOf(series, epochs);
}

int resultsCommand(const ResultsOptions& options) {
    const RunSeries series(options.mesh);
    const std::string text = resultsText(series, options);
    std::fwrite(text.data(), 1, text.size(), stdout);
    return kExitDone;
}

}  // namespace

void addResultsCommand(CommandSet& commands) {
    const auto options = std::make_shared<ResultsOptions>();
    CLI::App& command = commands.add("results", "Tell in figures what a run has done, epoch by epoch",
                                     [options] { return resultsCommand(*options); });
    addFileArgument(command, options->mesh, "MESH", "Mesh that has been weathered, or the record of a run (.json)");
    CLI::Option* csv = command.add_flag("--csv", options->asCsv, "Print comma-separated values, a row for each epoch");
    CLI::Option* json = command.add_flag("--json", options->asJson, "Print one JSON object");
    CLI::Option* minerals = command.add_flag("--by-mineral", options->byMineral,
                                             "Print comma-separated values, a row for each epoch and mineral");
    json->excludes(csv)->excludes(minerals);
    csv->excludes(minerals);
}

}  // namespace talvek::host
