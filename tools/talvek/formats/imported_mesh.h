// A mesh as another program's file gives it, with all that the file says of it, and what had to be done so that it is
// triangles.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "mesh/object3d.h"

namespace talvek::host {

/// How the source's coordinates become millimetres: (coordinate - offset) * unit.
struct MeshPlace {
    /// Millimetres for each of the source's units.
    double unit = 1;
    /// Whole numbers, in the source's units.
    std::array<double, 3> offset{};

    bool isPlain() const { return unit == 1 && offset == std::array<double, 3>{}; }
};

/// The millimetres of a unit by its name, "mm", "cm", "m" or "in"; nothing for others.
std::optional<double> lengthUnit(std::string_view name);

/// The name of a unit that lengthUnit knows.
std::string lengthUnitName(double millimetres);

struct MeshMaterial {
    std::string name;
    /// Red, green, blue, opacity, in [0, 1].
    std::array<float, 4> colour{1, 1, 1, 1};
    /// The picture's file as the source names it; empty where there is none, or where the source holds it.
    std::string textureFile;
    /// The picture itself, and its kind ("image/png"), where the source holds it.
    std::string textureBytes;
    std::string textureKind;
};

/// Two or more triangles that are one face of the source.
struct SourcePolygon {
    std::int64_t firstTriangle = 0;
    std::int32_t numCorners = 0;
};

struct ImportCounts {
    /// Polygons whose corners no plane keeps apart, so that no way of dividing them is right.
    std::int64_t crossingPolygons = 0;
    /// Vertices that were made one with another of the same place.
    std::int64_t joinedVertices = 0;
    /// Vertices that were made one with another nearby, as asked for.
    std::int64_t weldedVertices = 0;
    /// Faces with fewer than three corners, lines and points.
    std::int64_t leftOut = 0;
    /// Corners that name a texture coordinate which is not there.
    std::int64_t absentTexels = 0;
    /// Surfaces and meshes of a file that has several.
    std::int64_t parts = 1;
};

struct ImportedMesh {
    /// Three for each vertex, in the source's order and units.
    std::vector<double> positions;
    /// Three vertices for each triangle, in the order of the source's faces.
    std::vector<std::int32_t> corners;
    /// Two for each texture coordinate, the second one counted from the picture's lower edge.
    std::vector<float> texels;
    /// The texture coordinate of each corner, -1 for none; empty where there are no texture coordinates.
    std::vector<std::int32_t> cornerTexels;
    /// Red, green, blue, opacity for each vertex, in [0, 1]; may be empty.
    std::vector<float> colours;
    std::vector<MeshMaterial> materials;
    /// The material of each triangle, -1 for none; may be empty.
    std::vector<std::int32_t> triangleMaterials;
    /// The faces that had more than three corners.
    std::vector<SourcePolygon> polygons;
    ImportCounts counts;
    MeshPlace place;

    std::int64_t numVertices() const { return static_cast<std::int64_t>(positions.size() / 3); }
    std::int64_t numTriangles() const { return static_cast<std::int64_t>(corners.size() / 3); }
};

/// What the library reads: millimetres in single precision, each rounded once, without normals. Arrays of the source
/// are given back as they are copied. Throws std::bad_alloc.
std::unique_ptr<Object3D> narrowMesh(ImportedMesh&& mesh);
std::unique_ptr<Object3D> narrowMesh(const ImportedMesh& mesh);

/// The positions and texture coordinates of a mesh that the library has read.
ImportedMesh widenMesh(const Object3D& mesh);

/// What was done to the source, a sentence for each; none for a file of plain triangles.
std::vector<std::string> importNotes(const ImportedMesh& mesh);

}  // namespace talvek::host
