#include "mesh/normals.h"

#include <algorithm>
#include <cmath>

#include "base/processor.h"
#include "math/not_a_number.h"
#include "mesh/normals_sse2.h"
#include "mesh/vector3.h"

namespace talvek {

namespace {

using Vector = Vector3<float>;

/// A face whose cross product is no longer than this is degenerate: it keeps its tiny product.
constexpr float kDegenerate = 1.0e-7F;

/// A unit normal and a 1: what a face adds to the sum of each of its vertices.
struct alignas(16) FaceNormal {
    float values[4];
    Vector vector() const { return {values[0], values[1], values[2]}; }
};

double distance(const float* vertices, std::int32_t a, std::int32_t b) {
    return length(tripleAt<double>(vertices, a) - tripleAt<double>(vertices, b));
}

/// The cross product (a - b) x (b - c), of unit length unless the face is degenerate.
FaceNormal faceNormal(const float* vertices, const std::int32_t* corner) {
    const Vector b = tripleAt<float>(vertices, corner[1]);
    const Vector n = cross(tripleAt<float>(vertices, corner[0]) - b, b - tripleAt<float>(vertices, corner[2]));
    const float size = length(n);
    const Vector unit = n / (size <= kDegenerate ? 1.0F : size);
    return {{unit.x, unit.y, unit.z, 1.0F}};
}

/// The normal of a vertex from the sum of its faces' normals, with their number behind it.
Vector vertexNormal(const float* sum) {
    if (sum[3] == 0) {
        return {0, 0, 0};
    }
    const Vector mean = Vector{sum[0], sum[1], sum[2]} / sum[3];
    const float size = length(mean);
    const Vector unit = size == 0 ? Vector{0, 0, 0} : mean / size;
    return {withOneNan(unit.x), withOneNan(unit.y), withOneNan(unit.z)};
}

/// How many vectors a machine works on at a time, and how; what is left over is plain work.
struct PlainMachine {
    static constexpr std::int64_t kAtATime = 1;
    static void faceNormals(const float* vertices, const std::int32_t* corners, FaceNormal* out) {
        *out = faceNormal(vertices, corners);
    }
    static void vertexNormals(const float* sums, float* out) { storeTriple(out, 0, vertexNormal(sums)); }
    static void add(float* sum, const FaceNormal& n) {
        for (int k = 0; k < 4; ++k) {
            sum[k] += n.values[k];
        }
    }
};

#ifdef TALVEK_HAS_SSE2
struct Sse2Machine {
    static constexpr std::int64_t kAtATime = 4;
    static void faceNormals(const float* vertices, const std::int32_t* corners, FaceNormal* out) {
        sse2::unitNormalsOfFour(vertices, corners, kDegenerate, out->values);
    }
    static void vertexNormals(const float* sums, float* out) { sse2::vertexNormalsOfFour(sums, out); }
    static void add(float* sum, const FaceNormal& n) { sse2::addFour(sum, n.values); }
};
#else
using Sse2Machine = PlainMachine;
#endif

/// Calls take(face, normal) for every face in order.
template <typename Machine, typename Take>
void forEachFaceNormal(const Object3D& mesh, Take take) {
    const float* vertices = mesh.vertices.get();
    const std::int32_t* corners = mesh.vertexIndex.get();
    FaceNormal normals[Machine::kAtATime];
    std::int64_t face = 0;
    for (; face + Machine::kAtATime <= mesh.numFaces; face += Machine::kAtATime) {
        Machine::faceNormals(vertices, corners + 3 * face, normals);
        for (std::int64_t i = 0; i < Machine::kAtATime; ++i) {
            take(face + i, normals[i]);
        }
    }
    for (; face < mesh.numFaces; ++face) {
        take(face, faceNormal(vertices, corners + 3 * face));
    }
}

/// Counting in single precision ends where adding 1 no longer changes anything; such counts are made again.
void recountWhereTooMany(const Object3D& mesh, float* sums) {
    constexpr float kCountable = 16777216;
    if (3 * std::int64_t{mesh.numFaces} < static_cast<std::int64_t>(kCountable)) {
        return;
    }
    for (std::int32_t vertex = 0; vertex < mesh.numVertices; ++vertex) {
        float& count = sums[4 * std::int64_t{vertex} + 3];
        if (count >= kCountable) {
            count = static_cast<float>(std::ranges::count(mesh.faceSpan(), vertex));
        }
    }
}

/// Four floats for each vertex: the sum of its faces' normals and their number.
template <typename Machine>
HeapArray<float> sumsOfFaceNormals(const Object3D& mesh, HeapArray<float> former) {
    HeapArray<float> sums = makeZeroedArrayFrom(std::move(former), 4 * std::int64_t{mesh.numVertices});
    const std::int32_t* corners = mesh.vertexIndex.get();
    forEachFaceNormal<Machine>(mesh, [&](std::int64_t face, const FaceNormal& n) {
        for (int k = 0; k < 3; ++k) {
            Machine::add(sums.get() + 4 * std::int64_t{corners[3 * face + k]}, n);
        }
    });
    recountWhereTooMany(mesh, sums.get());
    return sums;
}

template <typename Machine>
HeapArray<float> vertexNormalsOn(const Object3D& mesh, HeapArray<float> former) {
    HeapArray<float> sums = sumsOfFaceNormals<Machine>(mesh, std::move(former));
    // The normals take the place of the sums, from the front. What is left behind them serves the next update.
    std::int64_t vertex = 0;
    for (; vertex + Machine::kAtATime <= mesh.numVertices; vertex += Machine::kAtATime) {
        Machine::vertexNormals(sums.get() + 4 * vertex, sums.get() + 3 * vertex);
    }
    for (; vertex < mesh.numVertices; ++vertex) {
        storeTriple(sums.get(), vertex, vertexNormal(sums.get() + 4 * vertex));
    }
    return sums;
}

/// Each component is divided by a length that contains the components already divided: no true normalisation, but what
/// the mean normal has always been.
void normaliseInSequence(float (&n)[3]) {
    for (float& component : n) {
        component = component / std::sqrt(n[0] * n[0] + n[1] * n[1] + n[2] * n[2]);
    }
}

}  // namespace

HeapArray<float> computeVertexNormals(const Object3D& mesh, HeapArray<float> former) {
    return vertexNormalsOn<Sse2Machine>(mesh, std::move(former));
}

HeapArray<float> computeVertexNormalsPortably(const Object3D& mesh) {
    return vertexNormalsOn<PlainMachine>(mesh, nullptr);
}

void Object3D::updateNormals(bool withVertexNormals) {
    faceNormals.reset();
    if (withVertexNormals) {
        vertexNormals.reset();
    }
    if (faceColours == nullptr) {
        faceColours = makeFilledArray(3 * std::int64_t{numFaces}, 1.0F);
    }
    faceNormals = makeArray<float>(3 * std::int64_t{numFaces});
    measureFaces(faceNormals.get());
    if (withVertexNormals) {
        updateVertexNormals();
    }
}

void Object3D::updateVertexNormals() {
    vertexNormals = computeVertexNormals(*this, std::move(vertexNormals));
}

void Object3D::measureFaces(float* normals) {
    Vector sum = {0, 0, 0};
    forEachFaceNormal<Sse2Machine>(*this, [&](std::int64_t face, const FaceNormal& n) {
        const std::int32_t* corner = vertexIndex.get() + 3 * face;
        const float* from = vertices.get();
        meanEdgeLength +=
            static_cast<float>((distance(from, corner[0], corner[1]) + distance(from, corner[1], corner[2]) +
                                distance(from, corner[2], corner[0])) /
                               3.0);
        sum = sum + n.vector();
        if (normals != nullptr) {
            storeTriple(normals, face, n.vector());
        }
    });
    const auto count = static_cast<float>(numFaces);
    meanEdgeLength /= count;
    meanNormal[0] = sum.x / count;
    meanNormal[1] = sum.y / count;
    meanNormal[2] = sum.z / count;
    normaliseInSequence(meanNormal);
}

}  // namespace talvek
