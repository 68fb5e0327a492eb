// The surfaces of one run, and what is known about the run.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "api/session/operating_modes.h"
#include "mesh/object3d.h"
#include "talvek/plan/run_files.h"

namespace talvek::host {

/// The surface after an epoch, or with number 0 the one that the run began with.
struct SeriesSurface {
    std::int32_t epoch = 0;
    /// Since the beginning of the run.
    double days = 0;
    /// Of a homogeneous stone in this epoch, in millimetres; nothing where it differs from vertex to vertex.
    std::optional<double> delta;
    std::string file;
};

class RunSeries {
  public:
    /// Finds what a run of the mesh has left beside it. Throws Failure where there is no run.
    explicit RunSeries(const std::string& mesh);

    const RunFiles& files() const { return files_; }
    /// By time, the first surface first; epochs without a whole frame are left out.
    const std::vector<SeriesSurface>& surfaces() const { return surfaces_; }
    std::int32_t numEpochs() const { return numEpochs_; }
    /// Null where the run does not say.
    const OperatingMode* mode() const { return mode_; }
    const WeatheringModel* model() const { return model_; }
    /// Db, in grams per cubic centimetre.
    std::optional<double> density() const { return density_; }

    /// The surface of an epoch. Throws Failure where the run has none.
    const SeriesSurface& at(std::int32_t epoch) const;

    /// Reads a surface with its normals. Of a run in mode 2 the first surface is the mesh as it was resampled on the
    /// grid, so that all surfaces have the same vertices. Throws Failure.
    std::unique_ptr<Object3D> read(const SeriesSurface& surface) const;

    /// How far each vertex of a surface has moved along its first normal, in millimetres. Throws Failure where the
    /// surface does not have the vertices of the first one.
    std::vector<double> displacements(const Object3D& first, const Object3D& mesh, const SeriesSurface& surface) const;

  private:
    void readLog(const std::string& text);
    void dropMissingFrames();

    RunFiles files_;
    std::vector<SeriesSurface> surfaces_;
    std::int32_t numEpochs_ = 0;
    const OperatingMode* mode_ = nullptr;
    const WeatheringModel* model_ = nullptr;
    std::optional<double> density_;
};

}  // namespace talvek::host
