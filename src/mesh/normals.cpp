// Face normals and vertex normals of a mesh. All sums run in face order in single precision, so that a surface comes
// out the same to the last bit wherever it is computed.
#include <cmath>

#include "mesh/object3d.h"

namespace talvek {

namespace {

struct Vector {
    float x, y, z;
};

Vector at(const float* triples, std::int64_t i) {
    return {triples[3 * i], triples[3 * i + 1], triples[3 * i + 2]};
}

void store(float* triples, std::int64_t i, const Vector& v) {
    triples[3 * i] = v.x;
    triples[3 * i + 1] = v.y;
    triples[3 * i + 2] = v.z;
}

float lengthOf(const Vector& v) {
    return std::sqrt(v.x * v.x + v.y * v.y + v.z * v.z);
}

double distance(const Vector& a, const Vector& b) {
    const double x = static_cast<double>(a.x) - static_cast<double>(b.x);
    const double y = static_cast<double>(a.y) - static_cast<double>(b.y);
    const double z = static_cast<double>(a.z) - static_cast<double>(b.z);
    return std::sqrt(x * x + y * y + z * z);
}

/// The cross product (a - b) x (b - c), of unit length unless the face is degenerate: it then keeps its tiny product.
Vector faceNormal(const Vector& a, const Vector& b, const Vector& c) {
    constexpr float kDegenerate = 1.0e-7F;
    const Vector n = {(a.y - b.y) * (b.z - c.z) - (a.z - b.z) * (b.y - c.y),
                      (a.z - b.z) * (b.x - c.x) - (a.x - b.x) * (b.z - c.z),
                      (a.x - b.x) * (b.y - c.y) - (a.y - b.y) * (b.x - c.x)};
    const float length = lengthOf(n);
    const float divisor = length <= kDegenerate ? 1.0F : length;
    return {n.x / divisor, n.y / divisor, n.z / divisor};
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
        const Vector a = at(vertices.get(), corner[0]);
        const Vector b = at(vertices.get(), corner[1]);
        const Vector c = at(vertices.get(), corner[2]);
        const Vector n = faceNormal(a, b, c);
        store(faceNormals.get(), face, n);
        meanEdgeLength += static_cast<float>((distance(a, b) + distance(b, c) + distance(c, a)) / 3.0);
        sum = {sum.x + n.x, sum.y + n.y, sum.z + n.z};
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
        const Vector n = at(faceNormals.get(), corner / 3);
        const Vector sum = at(vertexNormals.get(), vertex);
        store(vertexNormals.get(), vertex, {sum.x + n.x, sum.y + n.y, sum.z + n.z});
        ++incidentFaces[static_cast<std::size_t>(vertex)];
    }
    for (std::int64_t vertex = 0; vertex < numVertices; ++vertex) {
        const std::int32_t count = incidentFaces[static_cast<std::size_t>(vertex)];
        if (count == 0) {
            continue;
        }
        const Vector sum = at(vertexNormals.get(), vertex);
        const auto divisor = static_cast<float>(count);
        const Vector mean = {sum.x / divisor, sum.y / divisor, sum.z / divisor};
        const float length = lengthOf(mean);
        const bool isZero = length == 0;
        store(vertexNormals.get(), vertex,
              isZero ? Vector{0, 0, 0} : Vector{mean.x / length, mean.y / length, mean.z / length});
    }
}

}  // namespace talvek
