#include "talvek/results/epoch_figures.h"

#include <set>

#include "weathering/mineral_classes.h"

namespace talvek::host {

SurfaceGauge::SurfaceGauge(const RunSeries& series)
    : series_(series),
      first_(series.read(series.at(0))),
      areas_(vertexAreas(*first_)),
      firstVolume_(enclosedVolume(*first_)),
      minerals_(series.minerals()) {
    // Only vertex normals are looked at from here on; these are as large as the mesh itself.
    first_->faceNormals.reset();
    first_->faceColours.reset();
    if (minerals_.size() != static_cast<std::size_t>(first_->numVertices)) {
        minerals_.clear();
    }
}

EpochFigures SurfaceGauge::measure(const SeriesSurface& surface, const Object3D& mesh) const {
    const std::vector<double> displacements = series_.displacements(*first_, mesh, surface);
    EpochFigures figures;
    figures.epoch = surface.epoch;
    figures.days = surface.days;
    figures.delta = surface.delta;
    figures.displacement = statisticsOf(displacements, areas_);
    figures.distance = statisticsOf(distances(*first_, mesh), areas_);
    figures.area = surfaceArea(mesh);
    figures.volume = enclosedVolume(mesh);
    if (firstVolume_ && figures.volume && series_.density()) {
        constexpr double kCubicMillimetres = 1000;
        figures.massLost = (*firstVolume_ - *figures.volume) / kCubicMillimetres * *series_.density();
    }
    figures.minerals = byMineral(displacements);
    return figures;
}

std::vector<MineralFigures> SurfaceGauge::byMineral(const std::vector<double>& displacements) const {
    std::vector<MineralFigures> all;
    for (const std::int32_t mineral : std::set<std::int32_t>(minerals_.begin(), minerals_.end())) {
        std::vector<double> values;
        std::vector<double> areas;
        for (std::size_t v = 0; v < minerals_.size(); ++v) {
            if (minerals_[v] == mineral) {
                values.push_back(displacements[v]);
                areas.push_back(areas_[v]);
            }
        }
        all.push_back({mineral, static_cast<double>(mineralFactor(mineral)), statisticsOf(values, areas)});
    }
    return all;
}

std::vector<EpochFigures> measureEpochs(const RunSeries& series) {
    const SurfaceGauge gauge(series);
    std::vector<EpochFigures> all;
    for (const SeriesSurface& surface : series.surfaces()) {
        all.push_back(surface.epoch == 0 ? gauge.measure(surface, gauge.first())
                                         : gauge.measure(surface, *series.read(surface)));
    }
    return all;
}

}  // namespace talvek::host
