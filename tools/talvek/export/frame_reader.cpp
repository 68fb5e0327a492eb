#include "talvek/export/frame_reader.h"

#include <algorithm>

#include "talvek/results/displacement.h"

namespace talvek::host {

FrameReader::FrameReader(const RunSeries& series)
    : series_(series), first_(series.read(series.at(0))), mesh_(copyMesh(*first_)) {
    if (mesh_->numFaces > 0) {
        curvature_.emplace(mesh_.get(), ShapeIndex::History::kForgotten);
    }
    frame_.mesh = mesh_.get();
    frame_.displacements.assign(static_cast<std::size_t>(first_->numVertices), 0.0F);
    frame_.minerals = series.minerals();
    if (frame_.minerals.size() != frame_.displacements.size()) {
        frame_.minerals.clear();
    }
}

const ExportFrame& FrameReader::read(const SeriesSurface& surface) {
    if (surface.epoch == 0) {
        std::ranges::copy(first_->vertexSpan(), mesh_->vertices.get());
        std::ranges::copy(first_->normalSpan(), mesh_->vertexNormals.get());
    } else {
        const std::unique_ptr<Object3D> read = series_.read(surface);
        series_.requireSameFaces(*first_, *read, surface);
        std::ranges::copy(read->vertexSpan(), mesh_->vertices.get());
        std::ranges::copy(read->normalSpan(), mesh_->vertexNormals.get());
    }
    if (curvature_) {
        curvature_->computeMeanAndGaussian();
    }
    const std::vector<double> moved = normalDisplacements(*first_, *mesh_);
    frame_.surface = surface;
    frame_.deltas.resize(moved.size());
    for (std::size_t v = 0; v < moved.size(); ++v) {
        const auto displacement = static_cast<float>(moved[v]);
        frame_.deltas[v] = surface.epoch == 0 ? 0 : displacement - frame_.displacements[v];
        frame_.displacements[v] = displacement;
    }
    return frame_;
}

}  // namespace talvek::host
