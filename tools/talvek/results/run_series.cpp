#include "talvek/results/run_series.h"

#include <algorithm>
#include <filesystem>
#include <string_view>

#include "api/session/log_lines.h"
#include "base/number_text.h"
#include "talvek/formats/mesh_file.h"
#include "talvek/results/displacement.h"
#include "talvek/support/exit_status.h"
#include "talvek/support/paths.h"
#include "talvek/support/whole_file.h"
#include "weathering/grid_mesh.h"
#include "weathering/rasterise.h"

namespace talvek::host {

namespace {

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

bool isLogLine(std::string_view line, std::string_view logged) {
    return line == logged.substr(0, logged.find('\n'));
}

bool isFile(const std::string& name) {
    std::error_code ignored;
    return std::filesystem::is_regular_file(pathOf(name), ignored);
}

}  // namespace

RunSeries::RunSeries(const std::string& mesh) : files_(mesh) {
    if (!isFile(files_.log) || !isFile(files_.firstSurface)) {
        throw Failure(kExitMesh, mesh + ": there is no run of it here: " +
                                     (isFile(files_.log) ? files_.firstSurface : files_.log) +
                                     " is missing; talvek run " + mesh + " makes one");
    }
    surfaces_.push_back({0, 0, std::nullopt, files_.firstSurface});
    readLog(readWholeFile(files_.log, kExitMesh));
    dropMissingFrames();
}

void RunSeries::readLog(const std::string& text) {
    double days = 0;
    std::string_view rest = text;
    while (!rest.empty()) {
        const std::string_view line = takeLine(rest);
        for (const OperatingMode& mode : kOperatingModes) {
            mode_ = isLogLine(line, mode.line) ? &mode : mode_;
        }
        for (const WeatheringModel& model : mode_ != nullptr ? *mode_->models : WeatheringModels{}) {
            model_ = !model.line.empty() && isLogLine(line, model.line) ? &model : model_;
        }
        density_ = density_ ? density_ : numberAfter(line, "\tDb: ");
        if (line.starts_with(kEpochLineStart)) {
            days += numberAfter(line, "\tdays: ").value_or(0);
            const std::int32_t number = toInt(line.substr(kEpochLineStart.size()));
            surfaces_.push_back({number, days, std::nullopt, files_.frame(number)});
        } else if (line.starts_with("delta = ")) {
            surfaces_.back().delta = numberAfter(line, "delta = ");
        }
    }
    numEpochs_ = surfaces_.back().epoch;
}

void RunSeries::dropMissingFrames() {
    std::erase_if(surfaces_, [](const SeriesSurface& surface) { return !isFile(surface.file); });
}

const SeriesSurface& RunSeries::at(std::int32_t epoch) const {
    const auto found = std::ranges::find(surfaces_, epoch, &SeriesSurface::epoch);
    if (found == surfaces_.end()) {
        throw Failure(kExitFrame, files_.mesh + ": the run has no surface of epoch " + std::to_string(epoch) +
                                      "; its surfaces are those of epochs 0 to " +
                                      std::to_string(surfaces_.back().epoch));
    }
    return *found;
}

std::unique_ptr<Object3D> RunSeries::read(const SeriesSurface& surface) const {
    if (surface.epoch > 0 || mode_ == nullptr || mode_->keepsVertices) {
        return readMesh(surface.file);
    }
    const std::unique_ptr<Object3D> mesh = readMesh(files_.mesh);
    std::unique_ptr<Object3D> resampled = gridToMesh(rasteriseToGrid(*mesh, mesh->vertices.get()).get(), true);
    resampled->updateNormals(true);
    return resampled;
}

std::vector<double> RunSeries::displacements(const Object3D& first, const Object3D& mesh,
                                             const SeriesSurface& surface) const {
    if (first.numVertices != mesh.numVertices || !std::ranges::equal(first.faceSpan(), mesh.faceSpan())) {
        throw Failure(kExitFrame, surface.file + ": this is another surface than the one the run began with; the " +
                                      "files beside " + files_.mesh + " are of different runs");
    }
    return normalDisplacements(first, mesh);
}

}  // namespace talvek::host
