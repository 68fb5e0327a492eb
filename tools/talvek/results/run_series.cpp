#include "talvek/results/run_series.h"

#include <algorithm>
#include <filesystem>
#include <string_view>

#include "api/session/log_lines.h"
#include "base/number_text.h"
#include "mesh/texture.h"
#include "talvek/formats/mesh_file.h"
#include "talvek/plan/import_arguments.h"
#include "talvek/plan/run_files.h"
#include "talvek/results/displacement.h"
#include "talvek/support/exit_status.h"
#include "talvek/support/paths.h"
#include "talvek/support/whole_file.h"
#include "weathering/grid_mesh.h"
#include "weathering/mineral_offsets.h"
#include "weathering/rasterise.h"

namespace talvek::host {

namespace {

namespace fs = std::filesystem;

std::string_view takeLine(std::string_view& text) {
    std::string_view line = text.substr(0, text.find('\n'));
    text.remove_prefix(std::min(line.size() + 1, text.size()));
    if (line.ends_with('\r')) {
        line.remove_suffix(1);
    }
    return line;
}

/// The number that follows a name in a line; nothing where the line does not have the name.
std::optional<double> numberAfter(std::string_view line, std::string_view name) {
    const std::size_t at = line.find(name);
    return at == std::string_view::npos ? std::nullopt : std::optional(toDouble(line.substr(at + name.size())));
}

/// The log has the gases in 1e-13 mol/cm³, with two decimals.
std::array<double, TALVEK_EPOCH_PARAMS> loggedEnvironment(std::string_view line) {
    constexpr double kGasUnit = 1e-13;
    return {kGasUnit * numberAfter(line, "SO2: ").value_or(0), kGasUnit * numberAfter(line, "NO2: ").value_or(0),
            numberAfter(line, "Rv: ").value_or(0), numberAfter(line, "RpH: ").value_or(0)};
}

bool isLogLine(std::string_view line, std::string_view logged) {
    return line == logged.substr(0, logged.find('\n'));
}

/// The model that a line of the log names; null where it names none.
const WeatheringModel* modelLogged(const OperatingMode& mode, std::string_view line) {
    const auto found = std::ranges::find_if(*mode.models, [line](const WeatheringModel& model) {
        return !model.line.empty() && isLogLine(line, model.line);
    });
    return found != mode.models->end() ? &*found : nullptr;
}

bool isFile(const std::string& name) {
    std::error_code ignored;
    return fs::is_regular_file(pathOf(name), ignored);
}

/// A host other than this program leaves a log and surfaces, but an earlier record in place.
bool isRecordOfTheseFiles(const RunFiles& files) {
    std::error_code failed;
    const auto recorded = fs::last_write_time(pathOf(files.record), failed);
    const auto begun = failed ? recorded : fs::last_write_time(pathOf(files.firstSurface), failed);
    return !failed && recorded >= begun;
}

}  // namespace

RunSeries::RunSeries(const std::string& name) : source_(name), mesh_(name) {
    if (lowerCaseExtension(name) == ".json") {
        takeRecord(readRunRecord(name), name);
    } else if (const RunFiles files(name); isRecordOfTheseFiles(files)) {
        takeRecord(readRunRecord(files.record), files.record);
    } else if (isFile(files.log) && isFile(files.firstSurface)) {
        mineralMap_ = files.mineralMap;
        surfaces_.push_back({0, 0, std::nullopt, files.firstSurface, std::nullopt, ""});
        takeLog(readWholeFile(files.log, kExitMesh));
    } else {
        throw Failure(kExitMesh,
                      name + ": there is no run of it here: " + (isFile(files.log) ? files.firstSurface : files.log) +
                          " is missing; talvek run " + name + " makes one");
    }
    numEpochs_ = surfaces_.back().epoch;
    std::erase_if(surfaces_, [](const SeriesSurface& surface) { return !isFile(surface.file); });
    if (surfaces_.empty() || surfaces_.front().epoch != 0) {
        throw Failure(kExitMesh, name + ": the surface that the run began with is missing; run it again");
    }
}

void RunSeries::takeLog(const std::string& text) {
    const RunFiles files(mesh_);
    double days = 0;
    std::string_view rest = text;
    while (!rest.empty()) {
        const std::string_view line = takeLine(rest);
        for (const OperatingMode& mode : kOperatingModes) {
            mode_ = isLogLine(line, mode.line) ? &mode : mode_;
        }
        model_ = mode_ != nullptr && model_ == nullptr ? modelLogged(*mode_, line) : model_;
        density_ = density_ ? density_ : numberAfter(line, "\tDb: ");
        if (line.starts_with(kEpochLineStart)) {
            days += numberAfter(line, "\tdays: ").value_or(0);
            const std::int32_t number = toInt(line.substr(kEpochLineStart.size()));
            surfaces_.push_back({number, days, std::nullopt, files.frame(number), std::nullopt, ""});
        } else if (line.starts_with("SO2: ")) {
            surfaces_.back().values = loggedEnvironment(line);
        } else if (line.starts_with("delta = ")) {
            surfaces_.back().delta = numberAfter(line, "delta = ");
        }
    }
}

void RunSeries::takeRecord(const RunRecord& record, const std::string& path) {
    constexpr std::size_t kDensity = TALVEK_MATERIAL_PARAMS - 1;
    const auto nameOfFile = [&path](const RecordedFile& file) {
        return file.path.empty() ? std::string() : pathOfRecorded(file.path, path);
    };
    source_ = nameOfFile(record.source);
    mesh_ = record.engineMesh.path.empty() ? source_ : nameOfFile(record.engineMesh);
    mineralMap_ = nameOfFile(record.mineralMap);
    mode_ = operatingMode(record.mode);
    model_ = mode_ != nullptr ? weatheringModel(*mode_, record.model) : nullptr;
    density_ = mode_ != nullptr && !mode_->isOffsetting ? std::optional(record.material[kDensity]) : std::nullopt;
    offset_ = record.offset;
    unit_ = lengthUnit(record.unit).value_or(1);
    surfaces_.push_back({0, 0, std::nullopt, nameOfFile(record.firstSurface), std::nullopt, ""});
    for (const RecordedEpoch& epoch : record.epochs) {
        const SeriesSurface& before = surfaces_.back();
        surfaces_.push_back({before.epoch + 1, before.days + epoch.days, epoch.delta, nameOfFile(epoch.frame),
                             epoch.values, epoch.end});
    }
    // The last surface is kept even where no frame is.
    if (surfaces_.size() > 1 && !isFile(surfaces_.back().file) && record.outcome == RunOutcome::kWhole) {
        surfaces_.back().file = nameOfFile(record.lastSurface);
    }
}

const SeriesSurface& RunSeries::at(std::int32_t epoch) const {
    const auto found = std::ranges::find(surfaces_, epoch, &SeriesSurface::epoch);
    if (found == surfaces_.end()) {
        throw Failure(kExitFrame, source_ + ": the run has no surface of epoch " + std::to_string(epoch) +
                                      "; its last one is that of epoch " + std::to_string(surfaces_.back().epoch));
    }
    return *found;
}

std::unique_ptr<Object3D> RunSeries::read(const SeriesSurface& surface) const {
    if (surface.epoch > 0 || mode_ == nullptr || mode_->keepsVertices) {
        return readMesh(surface.file);
    }
    const std::unique_ptr<Object3D> input = readMesh(mesh_);
    std::unique_ptr<Object3D> resampled = gridToMesh(rasteriseToGrid(*input, input->vertices.get()).get(), true);
    resampled->updateNormals(true);
    return resampled;
}

void RunSeries::requireSameFaces(const Object3D& first, const Object3D& mesh, const SeriesSurface& surface) const {
    if (first.numVertices != mesh.numVertices || !std::ranges::equal(first.faceSpan(), mesh.faceSpan())) {
        throw Failure(kExitFrame, surface.file +
                                      ": this is another surface than the one the run began with; the files of "
                                      "the run of " +
                                      source_ + " are of different runs");
    }
}

std::vector<double> RunSeries::displacements(const Object3D& first, const Object3D& mesh,
                                             const SeriesSurface& surface) const {
    requireSameFaces(first, mesh, surface);
    return normalDisplacements(first, mesh);
}

std::vector<std::int32_t> RunSeries::minerals() const {
    if (mode_ == nullptr || !mode_->needsMap || !mode_->keepsVertices || !isFile(mesh_) || !isFile(mineralMap_)) {
        return {};
    }
    const std::unique_ptr<Object3D> input = readMesh(mesh_);
    const std::unique_ptr<MineralMap> map = readMineralMap(mineralMap_.c_str());
    return map != nullptr && hasNamedTexels(*input) ? mineralsOfVertices(*input, *map) : std::vector<std::int32_t>();
}

}  // namespace talvek::host
