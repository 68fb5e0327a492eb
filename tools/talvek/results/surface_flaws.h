// Where a run has moved the surface farther than its details are large.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "mesh/object3d.h"
#include "talvek/inspect/points.h"

namespace talvek::host {

/// Flaws of one kind: how many there are, and the smallest box around them on the last surface.
struct Flaw {
    std::int64_t count = 0;
    /// The number of the first, from 0, and where it is.
    std::int64_t first = -1;
    Point firstAt{};
    Point low{};
    Point high{};

    void add(std::int64_t number, const Point& at);
};

struct SurfaceFlaws {
    /// Faces whose direction differs by more than 90 degrees from that on the first surface.
    Flaw turnedFaces;
    /// Edges more than five times as long as on the first surface.
    Flaw grownEdges;
    /// Vertices that have moved away from all their neighbours: every edge is more than three times as long as before.
    Flaw spikes;
};

/// Both surfaces have the same faces. What is not finite is left out.
SurfaceFlaws findFlaws(const Object3D& first, const Object3D& last);

/// A sentence for each kind that there is.
std::vector<std::string> flawTexts(const SurfaceFlaws& flaws, const Object3D& last);

}  // namespace talvek::host
