#include "talvek/export/vertex_fields.h"

#include <cmath>

namespace talvek::host {

std::vector<VertexField> fieldsOf(const ExportFrame& frame) {
    std::vector<VertexField> fields = {{"displacement_mm", frame.displacements}, {"delta_mm", frame.deltas}};
    const auto count = static_cast<std::size_t>(frame.mesh->numVertices);
    if (frame.mesh->meanCurvature != nullptr) {
        fields.push_back({"mean_curvature", {frame.mesh->meanCurvature.get(), count}});
        fields.push_back({"gaussian_curvature", {frame.mesh->gaussianCurvature.get(), count}});
    }
    return fields;
}

std::vector<ColourBytes> coloursOf(std::span<const float> displacements, const ChangeScale& scale) {
    constexpr ColourBytes kGrey = {128, 128, 128};
    std::vector<ColourBytes> colours;
    colours.reserve(displacements.size());
    for (const float displacement : displacements) {
        const double place = scale.place(static_cast<double>(displacement));
        colours.push_back(std::isfinite(place) ? bytesOf(scale.colourAt(place)) : kGrey);
    }
    return colours;
}

ChangeScale scaleOf(const RunSeries& series, const std::string& palette) {
    const PalettePair& pair = paletteNamed(palette);
    const SeriesSurface& last = series.surfaces().back();
    const std::unique_ptr<Object3D> first = series.read(series.at(0));
    return {series.displacements(*first, *series.read(last), last), pair, std::nullopt};
}

}  // namespace talvek::host
