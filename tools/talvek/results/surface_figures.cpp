#include "talvek/results/surface_figures.h"

#include <limits>
#include <vector>

#include "talvek/results/displacement.h"

namespace talvek::host {

SurfaceFigures figuresOf(const Object3D& first, const Object3D& surface) {
    SurfaceFigures figures;
    figures.area = surfaceArea(surface);
    figures.volume = enclosedVolume(surface);
    if (first.numVertices == surface.numVertices && first.numFaces == surface.numFaces) {
        const ValueStatistics moved = statisticsOf(normalDisplacements(first, surface), vertexAreas(first));
        figures.mean = moved.mean;
        figures.areaWeightedMean = moved.areaWeightedMean;
        figures.smallest = moved.smallest;
        figures.largest = moved.largest;
        figures.percentiles = moved.percentiles;
        return figures;
    }
    constexpr double kUntold = std::numeric_limits<double>::quiet_NaN();
    figures.mean = figures.areaWeightedMean = figures.smallest = figures.largest = kUntold;
    figures.percentiles.fill(kUntold);
    return figures;
}

}  // namespace talvek::host
