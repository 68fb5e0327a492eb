#include "talvek/formats/imported_mesh.h"

#include <algorithm>

#include "talvek/support/messages.h"

namespace talvek::host {

namespace {

struct LengthUnit {
    std::string_view name;
    double millimetres;
};

constexpr LengthUnit kLengthUnits[] = {{"mm", 1}, {"cm", 10}, {"in", 25.4}, {"m", 1000}};

std::string count(std::int64_t number, const char* thing) {
    return countOf(static_cast<std::uint64_t>(number), thing);
}

HeapArray<float> narrowPositions(const ImportedMesh& mesh) {
    HeapArray<float> vertices = makeArray<float>(static_cast<std::int64_t>(mesh.positions.size()));
    const MeshPlace& place = mesh.place;
    for (std::size_t i = 0; i < mesh.positions.size(); i += 3) {
        for (std::size_t k = 0; k < 3; ++k) {
            vertices[i + k] = static_cast<float>((mesh.positions[i + k] - place.offset[k]) * place.unit);
        }
    }
    return vertices;
}

/// Colours without their opacity, for which the library has no place.
HeapArray<float> opaqueColours(const std::vector<float>& colours) {
    HeapArray<float> opaque = makeArray<float>(static_cast<std::int64_t>(colours.size() / 4 * 3));
    for (std::size_t v = 0; v < colours.size() / 4; ++v) {
        std::copy_n(colours.begin() + static_cast<std::ptrdiff_t>(4 * v), 3, opaque.get() + 3 * v);
    }
    return opaque;
}

template <typename T>
void release(std::vector<T>& values) {
    values = {};
}

template <typename T>
void release(const std::vector<T>& /*values*/) {}

/// Copies an array, and gives the memory of one back that may be changed.
template <typename Values>
auto takeArray(Values& from) {
    auto array = copyArray(from.data(), static_cast<std::int64_t>(from.size()));
    release(from);
    return array;
}

template <typename Mesh>
std::unique_ptr<Object3D> narrow(Mesh& mesh) {
    auto narrowed = std::make_unique<Object3D>();
    narrowed->numVertices = static_cast<std::int32_t>(mesh.numVertices());
    narrowed->numFaces = static_cast<std::int32_t>(mesh.numTriangles());
    narrowed->vertices = narrowPositions(mesh);
    release(mesh.positions);
    if (!mesh.texels.empty()) {
        narrowed->numTexels = static_cast<std::int32_t>(mesh.texels.size() / 2);
        narrowed->texels = takeArray(mesh.texels);
        narrowed->texelIndex = mesh.cornerTexels.empty() ? makeFilledArray<std::int32_t>(3 * mesh.numTriangles(), -1)
                                                         : takeArray(mesh.cornerTexels);
    }
    narrowed->vertexIndex = takeArray(mesh.corners);
    if (!mesh.colours.empty()) {
        narrowed->vertexColours = opaqueColours(mesh.colours);
    }
    return narrowed;
}

}  // namespace

std::optional<double> lengthUnit(std::string_view name) {
    const auto* const unit = std::ranges::find(kLengthUnits, name, &LengthUnit::name);
    return unit != std::end(kLengthUnits) ? std::optional(unit->millimetres) : std::nullopt;
}

std::string lengthUnitName(double millimetres) {
    const auto* const unit = std::ranges::find(kLengthUnits, millimetres, &LengthUnit::millimetres);
    return unit != std::end(kLengthUnits) ? std::string(unit->name) : "mm";
}

std::unique_ptr<Object3D> narrowMesh(ImportedMesh&& mesh) {
    return narrow(mesh);
}

std::unique_ptr<Object3D> narrowMesh(const ImportedMesh& mesh) {
    return narrow(mesh);
}

ImportedMesh widenMesh(const Object3D& mesh) {
    ImportedMesh wide;
    const auto vertices = mesh.vertexSpan();
    wide.positions.assign(vertices.begin(), vertices.end());
    wide.corners.assign(mesh.faceSpan().begin(), mesh.faceSpan().end());
    if (mesh.texels != nullptr && mesh.numTexels > 0) {
        wide.texels.assign(mesh.texels.get(), mesh.texels.get() + 2 * static_cast<std::size_t>(mesh.numTexels));
        const std::int32_t* index = mesh.texelIndex != nullptr ? mesh.texelIndex.get() : mesh.vertexIndex.get();
        wide.cornerTexels.assign(index, index + wide.corners.size());
    }
    for (std::size_t v = 0; mesh.vertexColours != nullptr && v < static_cast<std::size_t>(mesh.numVertices); ++v) {
        const float* colour = mesh.vertexColours.get() + 3 * v;
        wide.colours.insert(wide.colours.end(), {colour[0], colour[1], colour[2], 1.0F});
    }
    return wide;
}

std::vector<std::string> importNotes(const ImportedMesh& mesh) {
    const ImportCounts& counts = mesh.counts;
    std::vector<std::string> notes;
    if (counts.parts > 1) {
        notes.push_back(count(counts.parts, "part") + " put together as one mesh");
    }
    if (!mesh.polygons.empty()) {
        std::int64_t triangles = 0;
        for (const SourcePolygon& polygon : mesh.polygons) {
            triangles += polygon.numCorners - 2;
        }
        notes.push_back(count(static_cast<std::int64_t>(mesh.polygons.size()), "polygon") + " divided into " +
                        count(triangles, "triangle"));
    }
    if (counts.crossingPolygons > 0) {
        notes.push_back(count(counts.crossingPolygons, "polygon") +
                        " with an outline that crosses itself; the triangles made of such a one overlap");
    }
    if (counts.joinedVertices > 0) {
        notes.push_back(count(counts.joinedVertices, "vertex") + " joined with others of equal coordinates");
    }
    if (counts.weldedVertices > 0) {
        notes.push_back(count(counts.weldedVertices, "vertex") + " welded to others nearby");
    }
    if (counts.absentTexels > 0) {
        notes.push_back(count(counts.absentTexels, "face corner") + " naming texture coordinates that are not there");
    }
    if (counts.leftOut > 0) {
        notes.push_back(count(counts.leftOut, "element") + " left out: lines, points, faces of fewer than 3 corners");
    }
    return notes;
}

}  // namespace talvek::host
