#include "mesh/ring_order.h"

#include <algorithm>
#include <cmath>
#include <tuple>

#include "math/exact_math.h"
#include "mesh/vector3.h"

namespace talvek {

namespace {

using Vector = Vector3<float>;

/// Measures angles around a vertex in the plane through the origin across a normal. All of it, the circle constants
/// included, is single precision: with exact ones the neighbours in flat regions would come in another order.
class AngleGauge {
  public:
    AngleGauge(const Vector& vertex, const Vector& first, const Vector& normal)
        : normal_(normal), scaledNormal_(normal / dot(normal, normal)), centre_(onPlane(vertex, vertex)) {
        reference_ = onPlane(first - centre_, first);
    }

    /// Degrees, 0 to 360, counter-clockwise from the first neighbour.
    float angleOf(const Vector& neighbour) const {
        constexpr float kTwoPi = 6.2831855F;
        constexpr float kPi = 3.1415927F;
        const Vector direction = onPlane(neighbour - centre_, neighbour);
        const Vector c = cross(reference_, direction);
        const float sign = dot(c, normal_) > 0 ? -1.0F : 1.0F;
        const float angle = exact::arcTangent2f(length(c), dot(direction, reference_));
        const float degrees = (angle * sign + kTwoPi) * 180.0F / kPi;
        // Below two full turns this is the remainder: nothing is lost in the difference. Without a branch, because
        // every other angle would mispredict it.
        return degrees - (degrees >= 360.0F ? 360.0F : 0.0F);
    }

  private:
    /// Takes from `v` what `point` has along the normal.
    Vector onPlane(const Vector& v, const Vector& point) const { return v - scaledNormal_ * dot(normal_, point); }

    Vector normal_;
    /// Divided by the square of its length.
    Vector scaledNormal_;
    Vector centre_;
    Vector reference_;
};

}  // namespace

void RingOrder::sort(std::int32_t vertex, std::span<std::int32_t> ring) {
    if (ring.empty()) {
        return;
    }
    constexpr float kBehindAllAngles = 1000.0F;
    const float* positions = mesh_.vertices.get();
    const AngleGauge gauge(tripleAt<float>(positions, vertex), tripleAt<float>(positions, ring[0]),
                           tripleAt<float>(mesh_.vertexNormals.get(), ring[0]));
    entries_.clear();
    entries_.push_back({.angle = 0, .place = 0, .neighbour = ring[0]});
    for (std::size_t i = 1; i < ring.size(); ++i) {
        const float angle = gauge.angleOf(tripleAt<float>(positions, ring[i]));
        entries_.push_back({.angle = std::isnan(angle) ? kBehindAllAngles : angle,
                            .place = static_cast<std::int32_t>(i),
                            .neighbour = ring[i]});
    }
    std::ranges::sort(entries_, [](const Entry& a, const Entry& b) {
        return std::tie(a.angle, a.place) < std::tie(b.angle, b.place);
    });
    std::ranges::transform(entries_, ring.begin(), &Entry::neighbour);
}

}  // namespace talvek
