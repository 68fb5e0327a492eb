#include "support/plain_curvature.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "math/exact_math.h"

namespace talvek::test {

namespace {

using Rings = std::vector<std::vector<std::int32_t>>;
using Float3 = std::array<float, 3>;
using Double3 = std::array<double, 3>;

Float3 floatsAt(const HeapArray<float>& triples, std::int32_t i) {
    const std::size_t at = 3 * static_cast<std::size_t>(i);
    return {triples[at], triples[at + 1], triples[at + 2]};
}

Double3 doublesAt(const HeapArray<float>& triples, std::int32_t i) {
    const Float3 item = floatsAt(triples, i);
    return {static_cast<double>(item[0]), static_cast<double>(item[1]), static_cast<double>(item[2])};
}

template <typename T>
std::array<T, 3> minus(const std::array<T, 3>& a, const std::array<T, 3>& b) {
    return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}

template <typename T>
T inner(const std::array<T, 3>& a, const std::array<T, 3>& b) {
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

template <typename T>
std::array<T, 3> outer(const std::array<T, 3>& a, const std::array<T, 3>& b) {
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

template <typename T>
T norm(const std::array<T, 3>& a) {
    return std::sqrt(inner(a, a));
}

void addIfMissing(Rings& rings, std::int32_t p, std::int32_t q) {
    auto& ofP = rings[static_cast<std::size_t>(p)];
    auto& ofQ = rings[static_cast<std::size_t>(q)];
    const bool isQMissing = std::find(ofP.begin(), ofP.end(), q) == ofP.end();
    const bool isPMissing = std::find(ofQ.begin(), ofQ.end(), p) == ofQ.end();
    if (isQMissing) {
        ofP.push_back(q);
    }
    if (isPMissing) {
        ofQ.push_back(p);
    }
}

float ringAngle(const Float3& p, const Float3& first, const Float3& n, const Float3& q) {
    const float square = inner(n, n);
    const Float3 m = {n[0] / square, n[1] / square, n[2] / square};
    Float3 projected;
    Float3 u;
    Float3 d;
    for (std::size_t k = 0; k < 3; ++k) {
        projected[k] = p[k] - m[k] * inner(n, p);
        u[k] = first[k] - projected[k] - m[k] * inner(n, first);
        d[k] = q[k] - projected[k] - m[k] * inner(n, q);
    }
    const Float3 c = outer(u, d);
    const float s = inner(c, n) > 0 ? -1.0F : 1.0F;
    return std::fmod((exact::arcTangent2f(norm(c), inner(d, u)) * s + 6.2831855F) * 180.0F / 3.1415927F, 360.0F);
}

void sortByAngle(const Object3D& mesh, std::int32_t vertex, std::vector<std::int32_t>& ring) {
    const Float3 p = floatsAt(mesh.vertices, vertex);
    const Float3 first = floatsAt(mesh.vertices, ring[0]);
    const Float3 normal = floatsAt(mesh.vertexNormals, ring[0]);
    std::vector<std::pair<float, std::int32_t>> sorted;
    for (std::size_t i = 0; i < ring.size(); ++i) {
        sorted.emplace_back(i == 0 ? 0.0F : ringAngle(p, first, normal, floatsAt(mesh.vertices, ring[i])), ring[i]);
    }
    std::ranges::stable_sort(sorted, [](const auto& a, const auto& b) {
        return std::isnan(b.first) ? !std::isnan(a.first) : a.first < b.first;
    });
    std::ranges::transform(sorted, ring.begin(), [](const auto& entry) { return entry.second; });
}

constexpr double kSmallest = 1.0000000116860974e-7;

double atLeastSmallest(double value) {
    return value < kSmallest ? kSmallest : value;
}

void storeDefaults(PlainCurvature& out) {
    out.shapeIndex.push_back(0.5F);
    for (auto* values : {&out.minimum, &out.maximum, &out.mean, &out.gaussian}) {
        values->push_back(0);
    }
}

void appendCurvature(PlainCurvature& out, double area, double angles, const Double3& sum, const Double3& n) {
    const double mean = inner(sum, n) / (4 * norm(n) * area);
    const double gaussian = (6.2831854820251465 - angles) / area;
    out.unzeroedMean.push_back(mean);
    out.unzeroedGaussian.push_back(gaussian);
    double delta = mean * mean - gaussian;
    const bool isDegenerate = delta < 0;
    if (isDegenerate) {
        delta = 0;
    }
    if (!(std::fabs(gaussian) > kSmallest) || isDegenerate) {
        storeDefaults(out);
        return;
    }
    const double k1 = mean - std::sqrt(delta);
    const double k2 = mean + std::sqrt(delta);
    const double smaller = k2 < k1 ? k2 : k1;
    const double larger = k2 < k1 ? k1 : k2;
    const double index = 0.5 - exact::arcTangent2(smaller + larger, larger - smaller) / 3.1415927410125732;
    out.shapeIndex.push_back(static_cast<float>(index));
    out.minimum.push_back(static_cast<float>(smaller));
    out.maximum.push_back(static_cast<float>(larger));
    out.mean.push_back(static_cast<float>(mean));
    out.gaussian.push_back(static_cast<float>(gaussian));
}

void appendVertex(PlainCurvature& out, const Object3D& mesh, std::int32_t vertex,
                  const std::vector<std::int32_t>& ring) {
    const Double3 p = doublesAt(mesh.vertices, vertex);
    double areaSum = 0;
    double angles = 0;
    Double3 sum = {0, 0, 0};
    for (std::size_t j = 0; j < ring.size(); ++j) {
        const Double3 q = doublesAt(mesh.vertices, ring[j]);
        const Double3 r = doublesAt(mesh.vertices, ring[(j + ring.size() - 1) % ring.size()]);
        const Double3 n = doublesAt(mesh.vertices, ring[(j + 1) % ring.size()]);
        const double crossR = atLeastSmallest(norm(outer(minus(p, r), minus(q, r))));
        const double crossN = atLeastSmallest(norm(outer(minus(p, n), minus(q, n))));
        const double cotAlpha = inner(minus(p, r), minus(q, r)) / crossR;
        const double cotBeta = inner(minus(p, n), minus(q, n)) / crossN;
        areaSum += crossN;
        for (std::size_t k = 0; k < 3; ++k) {
            sum[k] += (cotAlpha + cotBeta) * (p[k] - q[k]);
        }
        angles += exact::arcCosine(inner(minus(p, q), minus(p, n)) / (norm(minus(p, q)) * norm(minus(p, n))));
    }
    appendCurvature(out, areaSum / 6, angles, sum, doublesAt(mesh.vertexNormals, vertex));
}

}  // namespace

std::vector<std::vector<std::int32_t>> plainNeighbours(const Object3D& mesh) {
    Rings rings(static_cast<std::size_t>(mesh.numVertices));
    for (std::size_t i = 0; i < mesh.faceSpan().size(); i += 3) {
        const std::int32_t a = mesh.faceSpan()[i];
        const std::int32_t b = mesh.faceSpan()[i + 1];
        const std::int32_t c = mesh.faceSpan()[i + 2];
        addIfMissing(rings, a, b);
        addIfMissing(rings, a, c);
        addIfMissing(rings, b, c);
    }
    return rings;
}

std::vector<std::vector<std::int32_t>> plainOrderedRings(const Object3D& mesh) {
    Rings rings = plainNeighbours(mesh);
    for (std::int32_t vertex = 0; vertex < mesh.numVertices; ++vertex) {
        std::vector<std::int32_t>& ring = rings[static_cast<std::size_t>(vertex)];
        if (!ring.empty()) {
            sortByAngle(mesh, vertex, ring);
        }
    }
    return rings;
}

PlainCurvature plainCurvature(const Object3D& mesh) {
    const Rings rings = plainOrderedRings(mesh);
    PlainCurvature out;
    for (std::int32_t vertex = 0; vertex < mesh.numVertices; ++vertex) {
        const std::vector<std::int32_t>& ring = rings[static_cast<std::size_t>(vertex)];
        if (ring.size() < 3) {
            storeDefaults(out);
            out.unzeroedMean.push_back(0);
            out.unzeroedGaussian.push_back(0);
        } else {
            appendVertex(out, mesh, vertex, ring);
        }
    }
    return out;
}

}  // namespace talvek::test
