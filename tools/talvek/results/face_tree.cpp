// The nearest point of a triangle is found as by C. Ericson, "Real-Time Collision Detection", 2005, 5.1.5; its sides
// are told apart as by J. A. Baerentzen and H. Aanaes, "Signed distance computation using the angle weighted
// pseudonormal", 2005.

#include "talvek/results/face_tree.h"

#include <algorithm>
#include <cmath>

namespace talvek::host {

namespace {

using Vector = Vector3<double>;

/// Few enough that a leaf costs no more than the step to it.
constexpr std::int32_t kLeafSize = 4;

Vector widened(const Vector3<float>& v) {
    return {static_cast<double>(v.x), static_cast<double>(v.y), static_cast<double>(v.z)};
}

bool isFinite(const Vector3<float>& v) {
    return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z);
}

std::array<float, 3> components(const Vector3<float>& v) {
    return {v.x, v.y, v.z};
}

/// The point, and the corner that it is; -1 on an edge and -2 inside.
struct TrianglePoint {
    Vector point;
    int corner;
};

constexpr int kOnEdge = -1;
constexpr int kInside = -2;

TrianglePoint nearestOf(const Vector& p, const Vector& a, const Vector& b, const Vector& c) {
    const Vector ab = b - a;
    const Vector ac = c - a;
    const double d1 = dot(ab, p - a);
    const double d2 = dot(ac, p - a);
    if (d1 <= 0 && d2 <= 0) {
        return {a, 0};
    }
    const double d3 = dot(ab, p - b);
    const double d4 = dot(ac, p - b);
    if (d3 >= 0 && d4 <= d3) {
        return {b, 1};
    }
    const double vc = d1 * d4 - d3 * d2;
    if (vc <= 0 && d1 >= 0 && d3 <= 0) {
        return {a + ab * (d1 / (d1 - d3)), kOnEdge};
    }
    const double d5 = dot(ab, p - c);
    const double d6 = dot(ac, p - c);
    if (d6 >= 0 && d5 <= d6) {
        return {c, 2};
    }
    const double vb = d5 * d2 - d1 * d6;
    if (vb <= 0 && d2 >= 0 && d6 <= 0) {
        return {a + ac * (d2 / (d2 - d6)), kOnEdge};
    }
    const double va = d3 * d6 - d5 * d4;
    if (va <= 0 && d4 - d3 >= 0 && d5 - d6 >= 0) {
        return {b + (c - b) * ((d4 - d3) / ((d4 - d3) + (d5 - d6))), kOnEdge};
    }
    const double sum = va + vb + vc;
    return {a + ab * (vb / sum) + ac * (vc / sum), kInside};
}

double angleBetween(const Vector& a, const Vector& b) {
    return std::atan2(length(cross(a, b)), dot(a, b));
}

}  // namespace

Vector FaceTree::normalOf(const Face& face) const {
    const Vector a = widened(face.corners[0]);
    const Vector normal = cross(widened(face.corners[1]) - a, widened(face.corners[2]) - a);
    return normal / length(normal);
}

FaceTree::FaceTree(const Object3D& mesh) : vertexNormals_(static_cast<std::size_t>(mesh.numVertices), Vector{}) {
    faces_.reserve(static_cast<std::size_t>(mesh.numFaces));
    for (std::int64_t f = 0; f < mesh.numFaces; ++f) {
        Face face{};
        for (std::size_t k = 0; k < 3; ++k) {
            face.vertices[k] = mesh.vertexIndex[static_cast<std::size_t>(3 * f) + k];
            face.corners[k] = tripleAt<float>(mesh.vertices.get(), face.vertices[k]);
        }
        const Vector normal = normalOf(face);
        if (!std::ranges::all_of(face.corners, isFinite) || !std::isfinite(dot(normal, normal))) {
            continue;
        }
        for (std::size_t k = 0; k < 3; ++k) {
            const Vector corner = widened(face.corners[k]);
            const double angle =
                angleBetween(widened(face.corners[(k + 1) % 3]) - corner, widened(face.corners[(k + 2) % 3]) - corner);
            Vector& sum = vertexNormals_[static_cast<std::size_t>(face.vertices[k])];
            sum = sum + normal * angle;
        }
        faces_.push_back(face);
    }
    nodes_.reserve(faces_.size());
    if (!faces_.empty()) {
        build(0, static_cast<std::int32_t>(faces_.size()));
    }
}

void FaceTree::boundBox(Node& node, std::int32_t first, std::int32_t last) const {
    node.low.fill(std::numeric_limits<float>::max());
    node.high.fill(std::numeric_limits<float>::lowest());
    for (std::int32_t i = first; i < last; ++i) {
        for (const Vector3<float>& corner : faces_[static_cast<std::size_t>(i)].corners) {
            const std::array<float, 3> place = components(corner);
            for (std::size_t k = 0; k < 3; ++k) {
                node.low[k] = std::min(node.low[k], place[k]);
                node.high[k] = std::max(node.high[k], place[k]);
            }
        }
    }
}

/// Halves the faces along the longest side of their box.
void FaceTree::build(std::int32_t first, std::int32_t last) {
    const std::size_t at = nodes_.size();
    Node node{};
    boundBox(node, first, last);
    nodes_.push_back(node);
    if (last - first <= kLeafSize) {
        nodes_[at].next = first;
        nodes_[at].numFaces = last - first;
        return;
    }
    std::size_t axis = 0;
    for (std::size_t k = 1; k < 3; ++k) {
        axis = node.high[k] - node.low[k] > node.high[axis] - node.low[axis] ? k : axis;
    }
    const std::int32_t middle = first + (last - first) / 2;
    const auto sum = [axis](const Face& face) {
        return components(face.corners[0])[axis] + components(face.corners[1])[axis] +
               components(face.corners[2])[axis];
    };
    std::nth_element(faces_.begin() + first, faces_.begin() + middle, faces_.begin() + last,
                     [&sum](const Face& a, const Face& b) { return sum(a) < sum(b); });
    build(first, middle);
    nodes_[at].next = static_cast<std::int32_t>(nodes_.size());
    build(middle, last);
}

double FaceTree::squaredDistanceTo(const Node& node, const Vector& place) {
    const std::array<double, 3> at = {place.x, place.y, place.z};
    double sum = 0;
    for (std::size_t k = 0; k < 3; ++k) {
        const double outside =
            std::max({static_cast<double>(node.low[k]) - at[k], 0.0, at[k] - static_cast<double>(node.high[k])});
        sum += outside * outside;
    }
    return sum;
}

void FaceTree::look(std::int32_t number, const Vector& place, NearestPlace& best) const {
    const Face& face = faces_[static_cast<std::size_t>(number)];
    const TrianglePoint found =
        nearestOf(place, widened(face.corners[0]), widened(face.corners[1]), widened(face.corners[2]));
    const Vector towards = place - found.point;
    const double squared = dot(towards, towards);
    // Two faces at an edge are equally near, up to rounding: the one that is seen less from its edge tells the side.
    constexpr double kTie = 1e-9;
    if (squared > best.squaredDistance * (1 + kTie)) {
        return;
    }
    Vector normal = normalOf(face);
    if (found.corner >= 0) {
        const Vector& sum =
            vertexNormals_[static_cast<std::size_t>(face.vertices[static_cast<std::size_t>(found.corner)])];
        const double size = length(sum);
        normal = size > 0 ? sum / size : normal;
    }
    const bool isTie = squared >= best.squaredDistance * (1 - kTie);
    const double height = dot(normal, towards);
    if (isTie && std::abs(height) <= std::abs(dot(best.normal, place - best.point))) {
        return;
    }
    best = {found.point, squared, std::copysign(std::sqrt(squared), height), normal, number};
}

NearestPlace FaceTree::nearestTo(const Vector& place, std::int32_t guess) const {
    NearestPlace best;
    if (nodes_.empty()) {
        return best;
    }
    if (guess >= 0) {
        look(guess, place, best);
    }
    struct Waiting {
        std::int32_t node;
        double squaredDistance;
    };
    // Deeper than a tree of halves over 2^31 faces.
    std::array<Waiting, 64> stack;
    std::size_t size = 0;
    stack[size++] = {0, squaredDistanceTo(nodes_[0], place)};
    while (size > 0) {
        const Waiting waiting = stack[--size];
        if (waiting.squaredDistance > best.squaredDistance) {
            continue;
        }
        const Node& node = nodes_[static_cast<std::size_t>(waiting.node)];
        for (std::int32_t i = node.next; i < node.next + node.numFaces; ++i) {
            look(i, place, best);
        }
        if (node.numFaces == 0) {
            const std::int32_t first = waiting.node + 1;
            const Waiting one = {first, squaredDistanceTo(nodes_[static_cast<std::size_t>(first)], place)};
            const Waiting other = {node.next, squaredDistanceTo(nodes_[static_cast<std::size_t>(node.next)], place)};
            const bool isFirstNearer = one.squaredDistance < other.squaredDistance;
            stack[size++] = isFirstNearer ? other : one;
            stack[size++] = isFirstNearer ? one : other;
        }
    }
    return best;
}

}  // namespace talvek::host
