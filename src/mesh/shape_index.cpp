#include "mesh/shape_index.h"

#include <cmath>
#include <cstddef>

#include "math/exact_math.h"
#include "mesh/ring_order.h"
#include "mesh/ring_terms.h"
#include "mesh/vector3.h"

namespace talvek {

namespace {

using Vector = Vector3<double>;

// Single-precision values on purpose, in double-precision arithmetic.
constexpr double kTiny = 1.0e-7F;
constexpr double kPi = 3.1415927F;

constexpr std::size_t kSmallestRing = 3;

struct Curvature {
    double shapeIndex = 0.5;
    double minimum = 0;
    double maximum = 0;
    double mean = 0;
    double gaussian = 0;
};

double areaOf(const RingSums& sums) {
    return sums.doubleArea / 6;
}

double meanOf(const RingSums& sums, const Vector& normal) {
    return dot(sums.cotangentWeighted, normal) / (4 * length(normal) * areaOf(sums));
}

/// What a vertex's curvature is made of.
struct Estimate {
    double mean;
    double gaussian;

    double discriminant() const { return mean * mean - gaussian; }
    /// Written so that an undefined Gaussian curvature counts as none, while an undefined mean curvature shows.
    bool counts() const { return std::fabs(gaussian) > kTiny && !(discriminant() < 0); }
};

/// Whether everything between two Gaussian curvatures gives the same result as either, in single precision.
bool areAlike(const Estimate& a, const Estimate& b) {
    const bool isOnOneSide =
        (a.gaussian > kTiny) == (b.gaussian > kTiny) && (a.gaussian < -kTiny) == (b.gaussian < -kTiny);
    return isOnOneSide && a.counts() == b.counts() && static_cast<float>(a.gaussian) == static_cast<float>(b.gaussian);
}

Curvature curvatureOf(const Estimate& estimate) {
    if (!estimate.counts()) {
        return {};
    }
    const double root = std::sqrt(estimate.discriminant());
    const double minimum = estimate.mean - root;
    const double maximum = estimate.mean + root;
    const double shapeIndex = 0.5 - exact::arcTangent2(minimum + maximum, maximum - minimum) / kPi;
    return {shapeIndex, minimum, maximum, estimate.mean, estimate.gaussian};
}

void resetArray(HeapArray<float>& array, std::int64_t count) {
    array.reset();
    array = makeArray<float>(count);
}

void resetCurvature(ObjCurvature& arrays, std::int64_t count) {
    resetArray(arrays.shapeIndex, count);
    resetArray(arrays.minimumCurvature, count);
    resetArray(arrays.maximumCurvature, count);
    resetArray(arrays.meanCurvature, count);
    resetArray(arrays.gaussianCurvature, count);
}

void storeCurvature(ObjCurvature& arrays, std::size_t vertex, const Curvature& curvature) {
    arrays.shapeIndex[vertex] = static_cast<float>(curvature.shapeIndex);
    arrays.minimumCurvature[vertex] = static_cast<float>(curvature.minimum);
    arrays.maximumCurvature[vertex] = static_cast<float>(curvature.maximum);
    arrays.meanCurvature[vertex] = static_cast<float>(curvature.mean);
    arrays.gaussianCurvature[vertex] = static_cast<float>(curvature.gaussian);
}

Vector normalOf(const Object3D& mesh, std::size_t vertex) {
    return tripleAt<double>(mesh.vertexNormals.get(), static_cast<std::int64_t>(vertex));
}

/// The calculated terms of a vertex's ring.
struct Ring {
    RingTerms& terms;
    std::size_t first;
    std::size_t size;
};

Estimate estimateOf(const Object3D& mesh, std::size_t vertex, const Ring& ring) {
    const RingSums sums = ring.terms.sums(ring.first, ring.size);
    return {meanOf(sums, normalOf(mesh, vertex)), ring.terms.deficit(ring.first, ring.size) / areaOf(sums)};
}

/// An estimate that gives the same in single precision. Half the work, unless the bounds of the angles leave it open.
Estimate roundedEstimateOf(const Object3D& mesh, std::size_t vertex, const Ring& ring) {
    const RingSums sums = ring.terms.sums(ring.first, ring.size);
    const double mean = meanOf(sums, normalOf(mesh, vertex));
    const double area = areaOf(sums);
    const Estimate low = {mean, sums.deficit.low / area};
    const Estimate high = {mean, sums.deficit.high / area};
    return areAlike(low, high) ? low : Estimate{mean, ring.terms.deficit(ring.first, ring.size) / area};
}

}  // namespace

void requireCurvableMesh(const Object3D* mesh) {
    if (mesh == nullptr) {
        throw "ShapeIndex::ShapeIndex: null Pointer: expecting Object3D";
    }
    if (mesh->numFaces <= 0) {
        throw "ShapeIndex::ShapeIndex: object must have > 0 triangles";
    }
    if (mesh->vertexNormals == nullptr || mesh->vertices == nullptr || mesh->vertexIndex == nullptr) {
        throw "ShapeIndex::ShapeIndex: for shape index you need to have VERTEX NORMAL array, COORDINATE array, and "
              "FACE INDEX array\n";
    }
}

ShapeIndex::ShapeIndex(Object3D* mesh, History history) : mesh_(mesh), history_(history) {
    requireCurvableMesh(mesh);
    rings_ = OneRings(*mesh);
    RingOrder order(*mesh);
    for (std::int32_t vertex = 0; vertex < mesh->numVertices; ++vertex) {
        order.sort(vertex, rings_.ring(vertex));
    }
}

void ShapeIndex::compute() {
    constexpr float kListedWithoutRing = 1.0F;
    resetCurvature(*mesh_, mesh_->numVertices);
    forEachVertex([&](std::size_t vertex, const Ring& ring) {
        const bool hasRing = ring.size >= kSmallestRing;
        storeCurvature(*mesh_, vertex, hasRing ? curvatureOf(estimateOf(*mesh_, vertex, ring)) : Curvature{});
        if (history_ == History::kKept) {
            shapeIndexList_.push_back(hasRing ? mesh_->shapeIndex[vertex] : kListedWithoutRing);
        }
    });
}

void ShapeIndex::computeMeanAndGaussian() {
    resetArray(mesh_->meanCurvature, mesh_->numVertices);
    resetArray(mesh_->gaussianCurvature, mesh_->numVertices);
    forEachVertex([&](std::size_t vertex, const Ring& ring) {
        const Estimate estimate = ring.size >= kSmallestRing ? roundedEstimateOf(*mesh_, vertex, ring) : Estimate{};
        const bool counts = estimate.counts();
        mesh_->meanCurvature[vertex] = static_cast<float>(counts ? estimate.mean : 0);
        mesh_->gaussianCurvature[vertex] = static_cast<float>(counts ? estimate.gaussian : 0);
    });
}

/// Gives each vertex and its ring to `use`.
template <typename Use>
void ShapeIndex::forEachVertex(Use use) const {
    RingTerms terms;
    for (std::int32_t vertex = 0; vertex < mesh_->numVertices;) {
        const std::int32_t end = addRings(terms, vertex);
        terms.calculate();
        for (std::size_t triangle = 0; vertex < end; ++vertex) {
            const std::size_t size = rings_.ring(vertex).size();
            use(static_cast<std::size_t>(vertex), Ring{terms, triangle, size});
            triangle += size >= kSmallestRing ? size : 0;
        }
    }
}

/// Adds the rings from a vertex on until there is no more room; returns the vertex behind the last one.
std::int32_t ShapeIndex::addRings(RingTerms& terms, std::int32_t first) const {
    terms.clear();
    std::int32_t vertex = first;
    for (; vertex < mesh_->numVertices && terms.hasRoomFor(rings_.ring(vertex).size()); ++vertex) {
        const std::span<const std::int32_t> ring = rings_.ring(vertex);
        if (ring.size() >= kSmallestRing) {
            terms.add(mesh_->vertices.get(), vertex, ring);
        }
    }
    return vertex;
}

}  // namespace talvek
