#include "support/use_mesh.h"

#include <algorithm>

#include "Vexo_Lib/obj.h"
#include "mesh/shape_index.h"
#include "support/meshes.h"
#include "weathering/surface.h"

namespace talvek::test {

namespace {

#ifdef _WIN32
constexpr const char* kNowhere = "NUL";
#else
constexpr const char* kNowhere = "/dev/null";
#endif

volatile float sink;

template <typename T>
void readAll(const HeapArray<T>& array, std::int64_t count) {
    float sum = 0;
    for (std::int64_t i = 0; array != nullptr && i < count; ++i) {
        sum += static_cast<float>(array[static_cast<std::size_t>(i)]);
    }
    sink = sum;
}

void readEverything(const Object3D& mesh) {
    const std::int64_t vertices = mesh.numVertices;
    const std::int64_t faces = mesh.numFaces;
    readAll(mesh.vertices, 3 * vertices);
    readAll(mesh.vertexNormals, 3 * vertices);
    readAll(mesh.vertexColours, 3 * vertices);
    readAll(mesh.texels, 2 * std::int64_t{mesh.numTexels});
    readAll(mesh.vertexIndex, 3 * faces);
    readAll(mesh.texelIndex, 3 * faces);
    readAll(mesh.faceNormals, 3 * faces);
    readAll(mesh.faceColours, 3 * faces);
    sink = static_cast<float>(nameOf(mesh).size() + std::string_view(mesh.label).size());
}

/// Nothing is moved where the curvature cannot be told.
void moveByCurvature(Object3D& mesh) try {
    ShapeIndex index(&mesh);
    index.compute();
    for (std::int32_t vertex = 0; vertex < mesh.numVertices; ++vertex) {
        moveVertex(mesh, vertex, -0.25F * mesh.meanCurvature[static_cast<std::size_t>(vertex)]);
    }
} catch (const char*) {
    return;
}

}  // namespace

bool hasSoundIndices(const Object3D& mesh) {
    return std::ranges::all_of(mesh.faceSpan(),
                               [&mesh](std::int32_t vertex) { return vertex >= 0 && vertex < mesh.numVertices; });
}

void weatherOnce(const Object3D& mesh) {
    readEverything(mesh);
    const std::unique_ptr<Object3D> surface = workingCopy(mesh);
    readEverything(*surface);
    moveByCurvature(*surface);
    moveAlongNormals(*surface, -0.5F);
    surface->updateNormals(true);
    WriteObjFileWithNormals(*surface, kNowhere);
}

}  // namespace talvek::test
