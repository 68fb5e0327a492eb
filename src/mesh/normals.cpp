// Face normals and vertex normals of a mesh. All sums run in face order in single precision, so that a surface comes
// out the same to the last bit wherever it is computed.
#include <cmath>

#include "base/not_a_number.h"
#include "mesh/object3d.h"
#include "mesh/vector3.h"

namespace talvek {

namespace {

using Vector = Vector3<float>;

double distance(const float* vertices, std::int32_t a, std::int32_t b) {
    return length(tripleAt<double>(vertices, a) - tripleAt<double>(vertices, b));
}

/// The cross product (a - b) x (b - c), of unit length unless the face is degenerate: it then keeps its tiny product.
Vector faceNormal(const Vector& a, const Vector& b, const Vector& c) {
    constexpr float kDegenerate = 1.0e-7F;
    const Vector n = cross(a - b, b - c);
    const float size = length(n);
    return n / (size <= kDegenerate ? 1.0F : size);
}

/// Each component is divided by a length that contains the components already divided: no true normalisation, but what
/// the mean normal has always been.
void normaliseInSequence(float (&n)[3]) {
    for (float& component : n) {
        component = component / std::sqrt(n[0] * n[0] + n[1] * n[1] + n[2] * n[2]);
    }
}

}  // namespace

void Object3D::updateNormals(bool withVertexNormals) {
    faceNormals.reset();
    if (withVertexNormals) {
        vertexNormals.reset();
    }
    if (faceColours == nullptr) {
        faceColours = makeFilledArray(3 * std::int64_t{numFaces}, 1.0F);
    }
    rebuildFaceNormals();
    if (withVertexNormals) {
        rebuildVertexNormals();
    }
}

void Object3D::rebuildFaceNormals() {
    faceNormals = makeArray<float>(3 * std::int64_t{numFaces});
    Vector sum = {0, 0, 0};
    for (std::int64_t face = 0; face < numFaces; ++face) {
        const std::int32_t* corner = vertexIndex.get() + 3 * face;
        const float* from = vertices.get();
        const Vector n = faceNormal(tripleAt<float>(from, corner[0]), tripleAt<float>(from, corner[1]),
                                    tripleAt<float>(from, corner[2]));
        storeTriple(faceNormals.get(), face, n);
        meanEdgeLength +=
            static_cast<float>((distance(from, corner[0], corner[1]) + distance(from, corner[1], corner[2]) +
                                distance(from, corner[2], corner[0])) /
                               3.0);
        sum = sum + n;
    }
    const auto count = static_cast<float>(numFaces);
    meanEdgeLength /= count;
    meanNormal[0] = sum.x / count;
    meanNormal[1] = sum.y / count;
    meanNormal[2] = sum.z / count;
    normaliseInSequence(meanNormal);
}

void Object3D::rebuildVertexNormals() {
    vertexNormals = makeZeroedArray<float>(3 * std::int64_t{numVertices});
    const HeapArray<std::int32_t> incidentFaces = makeZeroedArray<std::int32_t>(numVertices);
    for (std::int64_t corner = 0; corner < 3 * std::int64_t{numFaces}; ++corner) {
        const std::int32_t vertex = vertexIndex[static_cast<std::size_t>(corner)];
        const Vector n = tripleAt<float>(faceNormals.get(), corner / 3);
        storeTriple(vertexNormals.get(), vertex, tripleAt<float>(vertexNormals.get(), vertex) + n);
        ++incidentFaces[static_cast<std::size_t>(vertex)];
    }
    for (std::int64_t vertex = 0; vertex < numVertices; ++vertex) {
        const std::int32_t count = incidentFaces[static_cast<std::size_t>(vertex)];
        if (count == 0) {
            continue;
        }
        const Vector mean = tripleAt<float>(vertexNormals.get(), vertex) / static_cast<float>(count);
        const float size = length(mean);
        const Vector unit = size == 0 ? Vector{0, 0, 0} : mean / size;
        storeTriple(vertexNormals.get(), vertex, {withOneNan(unit.x), withOneNan(unit.y), withOneNan(unit.z)});
    }
}

}  // namespace talvek
