#include "api/frame_results.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <memory>
#include <numeric>

#include "Vexo_Lib/load3d.h"
#include "Vexo_Lib/obj.h"
#include "api/session/session.h"
#include "base/number_text.h"
#include "base/run_file_names.h"
#include "talvek.h"

namespace talvek {

namespace {

std::unique_ptr<Object3D> loadFrame(std::uint32_t frame) {
    return loadBareMesh(frameFileName(session().fileName, frame).c_str());
}

/// Writes the triple of every corner, in face order.
void expandCorners(const Object3D& mesh, const float* triples, float* out) {
    for (const std::int32_t vertex : mesh.faceSpan()) {
        out = std::copy_n(triples + 3 * std::int64_t{vertex}, 3, out);
    }
}

}  // namespace

std::uint32_t daysUntilFrame(std::int32_t frame) {
    std::int64_t days = 0;
    for (std::int32_t n = 1; n <= frame; ++n) {
        days += saturateToInt(session().epochTable.epoch(n).days());
    }
    constexpr std::int64_t kLargest = std::numeric_limits<std::uint32_t>::max();
    return static_cast<std::uint32_t>(std::clamp(days, std::int64_t{0}, kLargest));
}

std::int32_t countFrameTriangles(std::uint32_t frame) {
    const std::unique_ptr<Object3D> mesh = loadFrame(frame);
    return mesh != nullptr ? mesh->numFaces : 0;
}

std::int32_t readFrameGeometry(std::uint32_t frame, float* vertices, float* normals) {
    const std::unique_ptr<Object3D> mesh = loadFrame(frame);
    if (mesh == nullptr) {
        return TALVEK_ERROR_FRAME;
    }
    if (mesh->numVertices == 0) {
        return TALVEK_ERROR_NO_VERTICES;
    }
    mesh->updateVertexNormals();
    expandCorners(*mesh, mesh->vertices.get(), vertices);
    expandCorners(*mesh, mesh->vertexNormals.get(), normals);
    return TALVEK_OK;
}

void saveTriangles(const char* path, std::int32_t numTriangles, const float* vertices) {
    const std::int64_t numValues = 9 * std::int64_t{numTriangles};
    Object3D mesh;
    mesh.numFaces = numTriangles;
    mesh.numVertices = 3 * numTriangles;
    mesh.vertices = copyArray(vertices, numValues);
    mesh.vertexIndex = makeArray<std::int32_t>(mesh.numVertices);
    std::iota(mesh.vertexIndex.get(), mesh.vertexIndex.get() + mesh.numVertices, 0);
    mesh.updateNormals(true);
    // The host learns of a file that could not be written by its absence.
    static_cast<void>(WriteObjFile(mesh, path));
}

}  // namespace talvek
