// What a run has done to a surface, epoch by epoch, in figures.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "talvek/results/displacement.h"
#include "talvek/results/run_series.h"

namespace talvek::host {

/// The vertices on one mineral.
struct MineralFigures {
    /// 1 to 20, or 0 for a colour of the map that stands for none.
    std::int32_t mineral = 0;
    /// The share of the weathering that the mineral suffers.
    double factor = 0;
    ValueStatistics displacement;
};

struct EpochFigures {
    std::int32_t epoch = 0;
    /// Since the beginning of the run.
    double days = 0;
    std::optional<double> delta;
    /// Along the first normal, positive outwards, in millimetres; each vertex counts once, or in the area-weighted mean
    /// as much as its area on the first surface.
    ValueStatistics displacement;
    /// How far the vertices lie from where they began.
    ValueStatistics distance;
    /// Square millimetres, and of closed surfaces cubic millimetres and the grams that are gone.
    double area = 0;
    std::optional<double> volume;
    std::optional<double> massLost;
    /// In mode 3, for each mineral that occurs.
    std::vector<MineralFigures> minerals;
};

/// Measures the surfaces of a run against its first one.
class SurfaceGauge {
  public:
    /// Reads the first surface. Throws Failure. The series has to outlive this object.
    explicit SurfaceGauge(const RunSeries& series);

    const Object3D& first() const { return *first_; }
    const std::vector<std::int32_t>& minerals() const { return minerals_; }

    /// `mesh` is the surface as it was read. Throws Failure where it is another surface than the first one.
    EpochFigures measure(const SeriesSurface& surface, const Object3D& mesh) const;

  private:
    std::vector<MineralFigures> byMineral(const std::vector<double>& displacements) const;

    const RunSeries& series_;
    std::unique_ptr<Object3D> first_;
    std::vector<double> areas_;
    std::optional<double> firstVolume_;
    std::vector<std::int32_t> minerals_;
};

/// The figures of all surfaces of a run. Throws Failure.
std::vector<EpochFigures> measureEpochs(const RunSeries& series);

}  // namespace talvek::host
