// How far one surface lies from another.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "talvek/results/displacement.h"
#include "talvek/results/rigid_motion.h"

namespace talvek::host {

struct SurfaceDistance {
    /// Of each vertex of the first surface to the nearest place on the second one, in millimetres, positive on its
    /// outer side. Not finite for a vertex without a finite position.
    std::vector<double> distances;
    ValueStatistics signedStatistics;
    ValueStatistics absoluteStatistics;
    double rms = 0;
    /// What lies between the surfaces on the outer and on the inner side of the second one, in cubic millimetres: the
    /// distance of each vertex times the area around it.
    double volumeOutside = 0;
    double volumeInside = 0;
    /// The difference of the volumes that closed surfaces enclose.
    std::optional<double> enclosedDifference;
    std::optional<Alignment> alignment;
};

/// `mesh` is moved onto the other surface first where that is asked for. Throws Failure where one has no faces or no
/// vertex.
SurfaceDistance measureDistance(Object3D& mesh, const Object3D& other, bool wantsAlignment);

}  // namespace talvek::host
