// The triangle mesh that everything else reads, moves and writes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string_view>

#include "base/heap_array.h"

namespace talvek {

/// Per-vertex curvature, V values each; absent until a ShapeIndex has filled them.
struct ObjCurvature {
    HeapArray<float> minimumCurvature;
    HeapArray<float> maximumCurvature;
    HeapArray<float> gaussianCurvature;
    HeapArray<float> meanCurvature;
    /// In [0, 1].
    HeapArray<float> shapeIndex;
    HeapArray<float> curvatureReserve;
};

struct ObjVertexWeight {
    /// V values.
    HeapArray<float> vertexWeights;
};

/// A triangle mesh of V vertices, F faces and T texels. Arrays are flat: element 3 * i + k is component k of item i.
/// Indices are zero-based. Coordinates are millimetres.
class Object3D : public ObjCurvature, public ObjVertexWeight {
  public:
    static constexpr std::size_t kTextSize = 256;

    Object3D() = default;
    Object3D(const Object3D&) = delete;
    Object3D& operator=(const Object3D&) = delete;

    /// Rebuilds the face normals, the mean edge length and the mean normal, and with `withVertexNormals` the vertex
    /// normals: plain averages of the unit normals of the incident faces. White face colours are added where there are
    /// none. Has to be called after the vertices have moved. The mean edge length of an earlier call is added to the
    /// sum before it is divided. Throws std::bad_alloc. The vertex index has to lie in [0, V).
    virtual void updateNormals(bool withVertexNormals);
    virtual ~Object3D() = default;

    /// The vertex normals of updateNormals alone, without an array for the faces. Throws std::bad_alloc.
    void updateVertexNormals();

    /// The mean edge length and the mean normal of updateNormals alone, without an array for the faces.
    void measureFaces() { measureFaces(nullptr); }

    /// 3V floats.
    HeapArray<float> vertices;
    HeapArray<float> auxiliary;
    /// 2T floats.
    HeapArray<float> texels;
    /// 3F floats.
    HeapArray<float> faceNormals;
    /// 3F floats: red, green, blue in [0, 1].
    HeapArray<float> faceColours;
    /// 3V floats.
    HeapArray<float> vertexNormals;
    /// 3F vertex numbers.
    HeapArray<std::int32_t> vertexIndex;
    /// 3F texel numbers; may be the same block as the vertex index.
    HeapArray<std::int32_t> texelIndex;
    /// The largest of |x|, |y|, |z|; set when the mesh is loaded.
    float largestCoordinate = 0;
    /// 3V floats: red, green, blue in [0, 1].
    HeapArray<float> vertexColours;
    std::int32_t numFaces = 0;
    std::int32_t numVertices = 0;
    std::int32_t numTexels = 0;
    /// The path the mesh was loaded from; a path of kTextSize characters or more is cut and has no terminator.
    char name[kTextSize] = {};
    char label[kTextSize] = {};
    float meanNormal[3] = {};
    std::int32_t reserved = 0;
    float scale[3] = {1, 1, 1};
    std::uint8_t flag = 1;
    float meanEdgeLength = 0;

    std::span<float> vertexSpan() { return {vertices.get(), 3 * static_cast<std::size_t>(numVertices)}; }
    std::span<const float> vertexSpan() const { return {vertices.get(), 3 * static_cast<std::size_t>(numVertices)}; }
    std::span<const float> normalSpan() const {
        return {vertexNormals.get(), 3 * static_cast<std::size_t>(numVertices)};
    }
    std::span<const std::int32_t> faceSpan() const {
        return {vertexIndex.get(), 3 * static_cast<std::size_t>(numFaces)};
    }

  private:
    /// Fills `normals`, 3F floats, unless it is null.
    void measureFaces(float* normals);
};

/// Whether every vertex index lies in [0, V).
bool hasOnlyExistingVertices(const Object3D& mesh);

/// Fills a text field of a mesh: cut where it does not fit, always terminated.
void setText(char (&field)[Object3D::kTextSize], std::string_view text);

/// Copies positions, faces, name and label of a mesh; " (clone)" is added to the name as far as it fits. The clone has
/// no normals and no texels. Throws std::bad_alloc.
std::unique_ptr<Object3D> cloneMesh(const Object3D& mesh);

/// A clone with the texels, colours, normals and weights of the mesh besides; one of these for which there is no memory
/// stays absent. Throws std::bad_alloc.
std::unique_ptr<Object3D> copyMesh(const Object3D& mesh);

struct BoundingBox {
    float xmin, xmax, ymin, ymax, zmin, zmax;
};

/// The extremes of the vertices; all 0 for a mesh without vertices.
BoundingBox boundingBox(const Object3D& mesh);

/// The mean of the vertex positions, summed in double precision. Not a number for a mesh without vertices. `centre` has
/// three elements, or is null.
void centreOfMass(const Object3D& mesh, double* centre);

/// The largest of |x|, |y|, |z| over all vertices; 0 without vertices.
float largestAbsoluteCoordinate(const Object3D& mesh);

}  // namespace talvek
