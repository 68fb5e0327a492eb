#include "talvek/results/surface_flaws.h"

#include <algorithm>
#include <cmath>

#include "talvek/inspect/findings.h"
#include "talvek/inspect/mesh_edges.h"
#include "talvek/support/messages.h"

namespace talvek::host {

namespace {

constexpr double kGrownEdge = 5;
constexpr double kSpikeEdge = 3;

Point centreOf(const Object3D& mesh, std::int64_t face) {
    const std::int32_t* corners = mesh.vertexIndex.get() + 3 * face;
    return (pointOf(mesh, corners[0]) + pointOf(mesh, corners[1]) + pointOf(mesh, corners[2])) / 3.0;
}

Flaw findTurnedFaces(const Object3D& first, const Object3D& last) {
    Flaw turned;
    for (std::int64_t face = 0; face < last.numFaces; ++face) {
        // Never so for directions that are not numbers.
        if (dot(faceCross(first, face), faceCross(last, face)) < 0) {
            turned.add(face, centreOf(last, face));
        }
    }
    return turned;
}

/// How the edges of a vertex have grown.
struct EdgesAround {
    bool haveGrown = false;
    bool haveStayed = false;
};

double lengthOf(const Object3D& mesh, const Edge& edge) {
    return length(pointOf(mesh, edge.low) - pointOf(mesh, edge.high));
}

void findEdgeFlaws(SurfaceFlaws& flaws, const Object3D& first, const Object3D& last) {
    std::vector<EdgesAround> around(static_cast<std::size_t>(last.numVertices));
    std::int64_t number = 0;
    MeshEdges(last).forEach([&](const Edge& edge) {
        const double before = lengthOf(first, edge);
        const double after = lengthOf(last, edge);
        const bool hasGrown = before > 0 && after > kSpikeEdge * before && std::isfinite(after);
        for (const std::int32_t vertex : {edge.low, edge.high}) {
            EdgesAround& edges = around[static_cast<std::size_t>(vertex)];
            (hasGrown ? edges.haveGrown : edges.haveStayed) = true;
        }
        if (hasGrown && after > kGrownEdge * before) {
            flaws.grownEdges.add(number, (pointOf(last, edge.low) + pointOf(last, edge.high)) / 2.0);
        }
        ++number;
    });
    for (std::int32_t vertex = 0; vertex < last.numVertices; ++vertex) {
        const EdgesAround& edges = around[static_cast<std::size_t>(vertex)];
        if (edges.haveGrown && !edges.haveStayed) {
            flaws.spikes.add(vertex, pointOf(last, vertex));
        }
    }
}

std::string placeText(const Point& at) {
    return briefNumber(at.x) + " " + briefNumber(at.y) + " " + briefNumber(at.z);
}

std::string whereText(const Flaw& flaw) {
    return flaw.count == 1 ? "at " + placeText(flaw.firstAt) + " mm"
                           : "the first at " + placeText(flaw.firstAt) + " mm, all of them between " +
                                 placeText(flaw.low) + " and " + placeText(flaw.high);
}

}  // namespace

void Flaw::add(std::int64_t number, const Point& at) {
    if (count++ == 0) {
        first = number;
        firstAt = low = high = at;
    }
    low = {std::min(low.x, at.x), std::min(low.y, at.y), std::min(low.z, at.z)};
    high = {std::max(high.x, at.x), std::max(high.y, at.y), std::max(high.z, at.z)};
}

SurfaceFlaws findFlaws(const Object3D& first, const Object3D& last) {
    SurfaceFlaws flaws{.turnedFaces = findTurnedFaces(first, last), .grownEdges = {}, .spikes = {}};
    findEdgeFlaws(flaws, first, last);
    return flaws;
}

std::vector<std::string> flawTexts(const SurfaceFlaws& flaws, const Object3D& last) {
    std::vector<std::string> texts;
    if (flaws.turnedFaces.count > 0) {
        texts.push_back(partText(flaws.turnedFaces.count, last.numFaces, "faces") +
                        " have turned by more than 90 degrees, " + whereText(flaws.turnedFaces) +
                        ": the surface has moved farther there than its details are large, and passes through itself");
    }
    if (flaws.grownEdges.count > 0) {
        texts.push_back(countOf(static_cast<std::uint64_t>(flaws.grownEdges.count), "edge") +
                        " grown more than fivefold, " + whereText(flaws.grownEdges));
    }
    if (flaws.spikes.count > 0) {
        texts.push_back(countOf(static_cast<std::uint64_t>(flaws.spikes.count), "spike") +
                        ", vertices that have moved away from all their neighbours, " + whereText(flaws.spikes));
    }
    return texts;
}

}  // namespace talvek::host
