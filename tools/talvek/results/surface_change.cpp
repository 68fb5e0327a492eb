#include "talvek/results/surface_change.h"

#include <memory>

#include "Vexo_Lib/load3d.h"
#include "talvek/inspect/mesh_survey.h"
#include "talvek/results/surface_flaws.h"
#include "talvek/support/messages.h"

namespace talvek::host {

namespace {

void measureChange(SurfaceChange& change, const Object3D& first, const Object3D& last) {
    const std::vector<double> areas = vertexAreas(first);
    change.distance = statisticsOf(distances(first, last), areas);
    change.displacement = statisticsOf(normalDisplacements(first, last), areas);
    change.areaBefore = surfaceArea(first);
    change.areaAfter = surfaceArea(last);
    change.volumeBefore = enclosedVolume(first);
    if (change.volumeBefore) {
        change.volumeAfter = enclosedVolume(last);
    }
    change.flaws = flawTexts(findFlaws(first, last), last);
}

/// Of the 5 % that have lost or grown most, and least, nothing is said.
constexpr std::size_t kLow = 1;
constexpr std::size_t kHigh = 5;
static_assert(kPercentiles[kLow] == 5 && kPercentiles[kHigh] == 95);

std::string rangeText(double from, double to) {
    return briefNumber(from) + " to " + briefNumber(to) + " mm";
}

std::string displacementText(const ValueStatistics& moved) {
    const double low = moved.percentiles[kLow];
    const double high = moved.percentiles[kHigh];
    const auto means = [&moved](double sign) {
        return briefNumber(sign * moved.mean) + " mm on average, " + briefNumber(sign * moved.areaWeightedMean) +
               " mm by area; ";
    };
    if (moved.smallest == 0 && moved.largest == 0) {
        return {};
    }
    if (high <= 0) {
        return "it lost " + means(-1) + "90 % of the vertices lost " + rangeText(0 - high, -low);
    }
    if (low >= 0) {
        return "it grew " + means(1) + "90 % of the vertices grew by " + rangeText(low, high);
    }
    return "it lost and grew (-, +): " + means(1) + "90 % of the vertices moved by " + rangeText(low, high);
}

std::string percentText(double before, double after) {
    const double percent = before != 0 ? 100 * (after - before) / before : 0;
    return (percent > 0 ? "+" : "") + briefNumber(percent) + " %";
}

}  // namespace

std::optional<SurfaceChange> compareSurfaces(const std::string& first, const std::string& last) {
    const std::unique_ptr<Object3D> before = LoadMeshFile(first.c_str());
    const std::unique_ptr<Object3D> after = LoadMeshFile(last.c_str());
    if (before == nullptr || after == nullptr) {
        return std::nullopt;
    }
    SurfaceChange change;
    change.vertices = after->numVertices;
    change.notFinite = countNotFinite(*after);
    change.notFiniteBefore = countNotFinite(*before);
    change.isByVertex = before->numVertices == after->numVertices && before->numFaces == after->numFaces;
    if (change.isByVertex) {
        measureChange(change, *before, *after);
    }
    return change;
}

std::string notFiniteText(const SurfaceChange& change, bool isSmoothed) {
    if (change.notFinite == 0) {
        return {};
    }
    const bool areAll = change.notFinite == change.vertices;
    std::string text =
        areAll ? "no vertex has"
               : std::to_string(change.notFinite) + " of " + std::to_string(change.vertices) + " vertices have";
    text += areAll ? " a finite position in the last surface" : " no finite position in the last surface";
    if (change.notFiniteBefore > 0) {
        text += "; the first surface had " + std::to_string(change.notFiniteBefore) + " of that kind";
    }
    if (isSmoothed) {
        text +=
            "; where the faces around a vertex cancel out it has no normal, smoothing has no result there, and every "
            "epoch carries that to its neighbours: talvek check counts such vertices, and fewer epochs carry it less "
            "far";
    }
    return text;
}

std::vector<std::string> changeTexts(const SurfaceChange& change) {
    std::vector<std::string> texts = {"the surface moved by " + briefNumber(change.distance.mean) +
                                      " mm on average, by " + briefNumber(change.distance.largest) + " mm at most"};
    const std::string moved = displacementText(change.displacement);
    if (!moved.empty()) {
        texts.push_back(moved);
    }
    texts.push_back("area: " + briefNumber(change.areaBefore) + " square mm before, " + briefNumber(change.areaAfter) +
                    " after (" + percentText(change.areaBefore, change.areaAfter) + ")");
    if (change.volumeBefore && change.volumeAfter) {
        texts.push_back("volume: " + briefNumber(*change.volumeBefore) + " cubic mm before, " +
                        briefNumber(*change.volumeAfter) + " after (" +
                        percentText(*change.volumeBefore, *change.volumeAfter) + ")");
    }
    return texts;
}

}  // namespace talvek::host
