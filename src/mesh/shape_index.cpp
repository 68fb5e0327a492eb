#include "mesh/shape_index.h"

#include <cmath>
#include <cstddef>

#include "base/exact_math.h"
#include "mesh/ring_order.h"
#include "mesh/ring_terms.h"
#include "mesh/vector3.h"

namespace talvek {

namespace {

using Vector = Vector3<double>;

// Single-precision values on purpose, in double-precision arithmetic.
constexpr double kTiny = 1.0e-7F;
constexpr double kPi = 3.1415927F;
constexpr double kTwoPi = 6.2831855F;

constexpr std::size_t kSmallestRing = 3;

struct Curvature {
    double shapeIndex = 0.5;
    double minimum = 0;
    double maximum = 0;
    double mean = 0;
    double gaussian = 0;
};

Curvature curvatureOf(const RingSums& sums, const Vector& normal) {
    const double area = sums.doubleArea / 6;
    const double mean = dot(sums.cotangentWeighted, normal) / (4 * length(normal) * area);
    const double gaussian = (kTwoPi - sums.angle) / area;
    const double discriminant = mean * mean - gaussian;
    // Written so that an undefined Gaussian curvature counts as none, while an undefined mean curvature shows.
    if (!(std::fabs(gaussian) > kTiny) || discriminant < 0) {
        return {};
    }
    const double minimum = mean - std::sqrt(discriminant);
    const double maximum = mean + std::sqrt(discriminant);
    const double shapeIndex = 0.5 - exact::arcTangent2(minimum + maximum, maximum - minimum) / kPi;
    return {shapeIndex, minimum, maximum, mean, gaussian};
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

}  // namespace

ShapeIndex::ShapeIndex(Object3D* mesh, History history) : mesh_(mesh), history_(history) {
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
    rings_ = OneRings(*mesh);
    RingOrder order(*mesh);
    for (std::int32_t vertex = 0; vertex < mesh->numVertices; ++vertex) {
        order.sort(vertex, rings_.ring(vertex));
    }
}

void ShapeIndex::compute() {
    resetCurvature(*mesh_, mesh_->numVertices);
    RingTerms terms;
    for (std::int32_t vertex = 0; vertex < mesh_->numVertices;) {
        const std::int32_t first = vertex;
        vertex = addRings(terms, first);
        terms.calculate();
        storeRings(terms, first, vertex);
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

void ShapeIndex::storeRings(const RingTerms& terms, std::int32_t first, std::int32_t end) {
    constexpr float kListedWithoutRing = 1.0F;
    std::size_t triangle = 0;
    for (std::int32_t vertex = first; vertex < end; ++vertex) {
        const auto at = static_cast<std::size_t>(vertex);
        const std::size_t ringSize = std::as_const(rings_).ring(vertex).size();
        const bool hasRing = ringSize >= kSmallestRing;
        Curvature curvature;
        if (hasRing) {
            curvature =
                curvatureOf(terms.sums(triangle, ringSize), tripleAt<double>(mesh_->vertexNormals.get(), vertex));
            triangle += ringSize;
        }
        storeCurvature(*mesh_, at, curvature);
        if (history_ == History::kKept) {
            shapeIndexList_.push_back(hasRing ? mesh_->shapeIndex[at] : kListedWithoutRing);
        }
    }
}

}  // namespace talvek
