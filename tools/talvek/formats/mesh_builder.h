// Puts a mesh together from the faces that a reader comes across.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "talvek/formats/imported_mesh.h"

namespace talvek::host {

class MeshBuilder {
  public:
    /// `path` begins the messages.
    explicit MeshBuilder(const std::string& path) : path_(path) {}

    ImportedMesh& mesh() { return mesh_; }

    void addVertex(double x, double y, double z) { mesh_.positions.insert(mesh_.positions.end(), {x, y, z}); }

    /// Adds the vertex's colour to those of the vertices before, which are white where they had none.
    void setColour(std::int64_t vertex, float red, float green, float blue, float opacity);

    /// A face by its vertices, which may come later. One of fewer than three corners is left out and counted. `texels`
    /// has as many elements, or none.
    void addFace(std::span<const std::int64_t> corners, std::span<const std::int64_t> texels = {});

    void addTriangle(std::int32_t a, std::int32_t b, std::int32_t c) {
        mesh_.corners.insert(mesh_.corners.end(), {a, b, c});
        ++numFaces_;
    }

    /// The material of the faces that follow, -1 for none.
    void useMaterial(std::int32_t material) { material_ = material; }

    /// Divides the polygons and hands the mesh over. Throws Failure when a face names a vertex that is not there, or
    /// when there are more vertices or triangles than a mesh of the library can have.
    ImportedMesh finish();

  private:
    void addTexels(std::span<const std::int64_t> texels, std::size_t numCorners);
    void addMaterials(std::size_t numTriangles);
    void requireSizes() const;
    void requireVertices() const;
    /// A face can do without its texture coordinate, not without its vertex.
    void dropAbsentTexels();
    void dividePolygons();
    /// The source's face, counted from 1, that a triangle belongs to.
    std::int64_t faceOf(std::int64_t triangle) const;

    const std::string& path_;
    ImportedMesh mesh_;
    std::int64_t numFaces_ = 0;
    std::int32_t material_ = -1;
};

}  // namespace talvek::host
