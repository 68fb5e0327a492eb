// A turn and a shift that bring one surface to lie on another.
#pragma once

#include <array>
#include <span>
#include <vector>

#include "mesh/vector3.h"
#include "talvek/results/face_tree.h"

namespace talvek::host {

struct RigidMotion {
    /// Rows of a matrix that turns without stretching.
    std::array<Vector3<double>, 3> turn = {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};
    Vector3<double> shift{};

    Vector3<double> operator()(const Vector3<double>& place) const {
        return Vector3<double>{dot(turn[0], place), dot(turn[1], place), dot(turn[2], place)} + shift;
    }
    /// How far it turns, in degrees.
    double angle() const;
};

struct Alignment {
    RigidMotion motion;
    int steps = 0;
    /// Whether the steps had become too small to matter.
    bool hasSettled = false;
    /// The root mean square of the distances before and after, of the places that were used.
    double rmsBefore = 0;
    double rmsAfter = 0;
    /// The share of the places that lie near enough to the surface to be used at the end.
    double used = 0;
};

/// Finds the motion that brings places onto a surface which they already roughly lie on, by iterative closest points
/// with distances to the tangent planes. (Y. Chen and G. Medioni, "Object modelling by registration of multiple range
/// images", 1992.) What lies beyond three times the median distance is left out, so that a part that one of them lacks
/// does no harm.
Alignment alignTo(const FaceTree& surface, std::span<const Vector3<double>> places);

}  // namespace talvek::host
