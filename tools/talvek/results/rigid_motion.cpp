#include "talvek/results/rigid_motion.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace talvek::host {

namespace {

using Vector = Vector3<double>;

constexpr std::size_t kUnknowns = 6;
using Row = std::array<double, kUnknowns>;

struct Equations {
    std::array<Row, kUnknowns> matrix{};
    Row right{};

    /// One equation, row * unknowns = value, in the sense of least squares.
    void add(const Row& row, double value) {
        for (std::size_t i = 0; i < kUnknowns; ++i) {
            right[i] += row[i] * value;
            for (std::size_t k = 0; k < kUnknowns; ++k) {
                matrix[i][k] += row[i] * row[k];
            }
        }
    }

    /// By Cholesky's method. What the places leave open, such as the turn of a sphere, is held back a little and so
    /// stays.
    Row solve() {
        double trace = 0;
        for (std::size_t i = 0; i < kUnknowns; ++i) {
            trace += matrix[i][i];
        }
        for (std::size_t i = 0; i < kUnknowns; ++i) {
            matrix[i][i] += 1e-9 * trace + 1e-300;
        }
        for (std::size_t i = 0; i < kUnknowns; ++i) {
            for (std::size_t k = 0; k <= i; ++k) {
                double sum = matrix[i][k];
                for (std::size_t m = 0; m < k; ++m) {
                    sum -= matrix[i][m] * matrix[k][m];
                }
                matrix[i][k] = i == k ? std::sqrt(std::max(sum, 1e-300)) : sum / matrix[k][k];
            }
        }
        Row x = right;
        for (std::size_t i = 0; i < kUnknowns; ++i) {
            for (std::size_t k = 0; k < i; ++k) {
                x[i] -= matrix[i][k] * x[k];
            }
            x[i] /= matrix[i][i];
        }
        for (std::size_t i = kUnknowns; i-- > 0;) {
            for (std::size_t k = i + 1; k < kUnknowns; ++k) {
                x[i] -= matrix[k][i] * x[k];
            }
            x[i] /= matrix[i][i];
        }
        return x;
    }
};

/// Turns round an axis by as many radians as it is long. (O. Rodrigues, 1840.)
std::array<Vector, 3> turnAround(const Vector& axis) {
    const double angle = length(axis);
    if (angle == 0) {
        return RigidMotion().turn;
    }
    const Vector u = axis / angle;
    const double c = std::cos(angle);
    const double s = std::sin(angle);
    const double d = 1 - c;
    return {{{c + u.x * u.x * d, u.x * u.y * d - u.z * s, u.x * u.z * d + u.y * s},
             {u.y * u.x * d + u.z * s, c + u.y * u.y * d, u.y * u.z * d - u.x * s},
             {u.z * u.x * d - u.y * s, u.z * u.y * d + u.x * s, c + u.z * u.z * d}}};
}

/// First `inner`, then a turn around `centre` and a shift.
RigidMotion followedBy(const RigidMotion& inner, const std::array<Vector, 3>& turn, const Vector& centre,
                       const Vector& shift) {
    RigidMotion outer;
    outer.turn = turn;
    const Vector turned = outer(centre);
    RigidMotion both;
    for (std::size_t i = 0; i < 3; ++i) {
        both.turn[i] = inner.turn[0] * turn[i].x + inner.turn[1] * turn[i].y + inner.turn[2] * turn[i].z;
    }
    both.shift = outer(inner.shift) + centre - turned + shift;
    return both;
}

struct Pair {
    Vector place;
    NearestPlace nearest;
};

std::vector<Pair> pairUp(const FaceTree& surface, std::span<const Vector> places, const RigidMotion& motion) {
    std::vector<Pair> pairs;
    std::int32_t guess = -1;
    for (const Vector& place : places) {
        const Vector moved = motion(place);
        if (std::isfinite(dot(moved, moved))) {
            pairs.push_back({moved, surface.nearestTo(moved, guess)});
            guess = pairs.back().nearest.face;
        }
    }
    return pairs;
}

/// Leaves those that lie near enough.
void dropFar(std::vector<Pair>& pairs) {
    std::vector<double> distances;
    distances.reserve(pairs.size());
    for (const Pair& pair : pairs) {
        distances.push_back(pair.nearest.squaredDistance);
    }
    const auto middle = distances.begin() + static_cast<std::ptrdiff_t>(distances.size() / 2);
    std::nth_element(distances.begin(), middle, distances.end());
    constexpr double kFar = 9;
    const double limit = kFar * *middle;
    std::erase_if(pairs, [limit](const Pair& pair) { return pair.nearest.squaredDistance > limit; });
}

double rmsOf(const std::vector<Pair>& pairs) {
    double sum = 0;
    for (const Pair& pair : pairs) {
        sum += pair.nearest.squaredDistance;
    }
    return pairs.empty() ? 0 : std::sqrt(sum / static_cast<double>(pairs.size()));
}

Vector centreOf(const std::vector<Pair>& pairs) {
    Vector sum{};
    for (const Pair& pair : pairs) {
        sum = sum + pair.place;
    }
    return pairs.empty() ? sum : sum / static_cast<double>(pairs.size());
}

double extentOf(const std::vector<Pair>& pairs, const Vector& centre) {
    double extent = 0;
    for (const Pair& pair : pairs) {
        extent = std::max(extent, length(pair.place - centre));
    }
    return extent;
}

/// A turn and a shift that lay the pairs nearer to each other; the lengths of both are in millimetres.
Row stepFor(const std::vector<Pair>& pairs, const Vector& centre, double extent) {
    Equations equations;
    for (const Pair& pair : pairs) {
        const Vector& normal = pair.nearest.normal;
        const Vector lever = cross(pair.place - centre, normal) / extent;
        equations.add({lever.x, lever.y, lever.z, normal.x, normal.y, normal.z},
                      dot(normal, pair.nearest.point - pair.place));
    }
    return equations.solve();
}

}  // namespace

double RigidMotion::angle() const {
    const double trace = turn[0].x + turn[1].y + turn[2].z;
    const Vector axis = {turn[2].y - turn[1].z, turn[0].z - turn[2].x, turn[1].x - turn[0].y};
    return std::atan2(length(axis), trace - 1) * 180 / std::numbers::pi;
}

Alignment alignTo(const FaceTree& surface, std::span<const Vector> places) {
    constexpr int kMostSteps = 60;
    constexpr double kSmallStep = 1e-7;
    Alignment alignment;
    for (; alignment.steps < kMostSteps && !alignment.hasSettled; ++alignment.steps) {
        std::vector<Pair> pairs = pairUp(surface, places, alignment.motion);
        if (pairs.empty()) {
            return alignment;
        }
        dropFar(pairs);
        alignment.rmsBefore = alignment.steps == 0 ? rmsOf(pairs) : alignment.rmsBefore;
        const Vector centre = centreOf(pairs);
        const double extent = std::max(extentOf(pairs, centre), 1e-30);
        const Row step = stepFor(pairs, centre, extent);
        const Vector turn = Vector{step[0], step[1], step[2]} / extent;
        const Vector shift = {step[3], step[4], step[5]};
        alignment.motion = followedBy(alignment.motion, turnAround(turn), centre, shift);
        alignment.hasSettled = length(turn) < kSmallStep && length(shift) < kSmallStep * extent;
    }
    std::vector<Pair> pairs = pairUp(surface, places, alignment.motion);
    const auto all = static_cast<double>(pairs.size());
    dropFar(pairs);
    alignment.rmsAfter = rmsOf(pairs);
    alignment.used = static_cast<double>(pairs.size()) / all;
    return alignment;
}

}  // namespace talvek::host
