#include "talvek/results/run_recorder.h"

#include <algorithm>
#include <chrono>
#include <ctime>

#include "base/system.h"
#include "talvek/plan/planned_movement.h"
#include "talvek/results/surface_figures.h"
#include "talvek/support/messages.h"
#include "talvek/support/sha256.h"

namespace talvek::host {

namespace {

/// Universal time.
std::string now() {
    const std::time_t seconds = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
    char text[sizeof "2026-01-31T12:00:00Z"];
    // The program has no threads that could share the result.
    const std::tm* const parts = std::gmtime(&seconds);
    return parts != nullptr && std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", parts) > 0 ? text : "";
}

RecordedEpoch recordedEpoch(const SessionPlan& plan, const PlannedEpoch& planned) {
    RecordedEpoch epoch;
    epoch.days = planned.record.days();
    epoch.start = planned.start;
    epoch.end = planned.end;
    epoch.note = planned.note;
    for (std::size_t slot = 0; slot < epoch.values.size(); ++slot) {
        epoch.values[slot] = planned.value(slot);
    }
    const bool isRandom = plan.isOffsetting() && plan.model == TALVEK_MODEL_RANDOM_OFFSET;
    epoch.delta = isRandom ? std::nullopt : plannedDelta(plan, planned);
    return epoch;
}

bool isThere(const std::string& name) {
    return system::kindOf(name.c_str()) == system::FileKind::kRegular;
}

}  // namespace

RunRecorder::RunRecorder(const PreparedRun& run, const RunOptions& options) : run_(run) {
    record_.program = programVersion();
    record_.begun = now();
    record_.unit = lengthUnitName(run.place.unit);
    record_.offset = run.place.offset;
    record_.mode = run.plan.mode;
    record_.model = run.plan.model;
    record_.material = run.plan.material.values;
    std::ranges::transform(run.plan.epochs, std::back_inserter(record_.epochs),
                           [&run](const PlannedEpoch& epoch) { return recordedEpoch(run.plan, epoch); });
    for (std::int32_t n = 1; n <= run.plan.numEpochs(); ++n) {
        if (run.keepsFrame(n)) {
            record_.epochs[static_cast<std::size_t>(n) - 1].frame = nameOfFile(run.files.frame(n));
        }
    }
    if (run.keepInputFrame) {
        record_.inputFrame = nameOfFile(run.files.frame(0));
    }
    record_.firstSurface = nameOfFile(run.files.firstSurface);
    record_.lastSurface = nameOfFile(run.files.lastSurface);
    record_.log = nameOfFile(run.files.log);
    record_.figuresBefore = figuresOf(*run.mesh, *run.mesh);
    addInputs(options);
}

RecordedFile RunRecorder::nameOfFile(const std::string& name) const {
    return {.path = recordedPath(name, run_.files.record), .bytes = 0, .sha256 = {}};
}

RecordedFile RunRecorder::fileOf(const std::string& name) const {
    RecordedFile file = nameOfFile(name);
    if (isThere(name)) {
        const FileSum sum = sumOf(name);
        file.bytes = sum.bytes;
        file.sha256 = sum.sha256;
    }
    return file;
}

void RunRecorder::addInputs(const RunOptions& options) {
    record_.source = fileOf(run_.files.source);
    if (run_.files.mesh != run_.files.source) {
        record_.engineMesh = fileOf(run_.files.mesh);
    }
    if (run_.plan.needsMap()) {
        record_.mineralMap = fileOf(run_.files.mineralMap);
    }
    if (!options.config.empty()) {
        record_.parameterFile = fileOf(options.config);
    }
    if (!options.epochTable.empty()) {
        record_.epochTable = fileOf(options.epochTable);
    }
}

void RunRecorder::begin() {
    writeRunRecord(record_, run_.files.record);
}

void RunRecorder::addFrame(std::int32_t number, const Object3D& surface) {
    RecordedEpoch& epoch = record_.epochs[static_cast<std::size_t>(number) - 1];
    epoch.figures = figuresOf(*run_.mesh, surface);
    if (run_.keepsFrame(number)) {
        epoch.frame = fileOf(run_.files.frame(number));
    }
}

void RunRecorder::end(RunOutcome outcome) {
    record_.outcome = outcome;
    record_.ended = now();
    record_.warnings = printedWarnings();
    const auto complete = [this](RecordedFile& file, const std::string& name) {
        if (!file.path.empty()) {
            file = fileOf(name);
        }
    };
    if (outcome == RunOutcome::kWhole) {
        complete(record_.inputFrame, run_.files.frame(0));
        complete(record_.firstSurface, run_.files.firstSurface);
        complete(record_.lastSurface, run_.files.lastSurface);
        // The library has brought a mesh of the oldest format into the current one.
        complete(record_.source, run_.files.source);
        complete(record_.engineMesh, run_.files.mesh);
        record_.figures = record_.epochs.empty() ? record_.figuresBefore : record_.epochs.back().figures;
    }
    complete(record_.log, run_.files.log);
    writeRunRecord(record_, run_.files.record);
}

}  // namespace talvek::host
