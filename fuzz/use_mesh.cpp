#include "use_mesh.h"

#include "Vexo_Lib/load3d.h"
#include "Vexo_Lib/obj.h"
#include "input_on_disk.h"
#include "weathering/surface.h"

namespace talvek::fuzz {

namespace {

void checkIndices(const Object3D& mesh) {
    for (const std::int32_t vertex : mesh.faceSpan()) {
        if (vertex < 0 || vertex >= mesh.numVertices) {
            __builtin_trap();
        }
    }
}

/// Touches every element that the counts promise.
float sumOf(const float* values, std::int64_t count) {
    float sum = 0;
    for (std::int64_t i = 0; values != nullptr && i < count; ++i) {
        sum += values[i];
    }
    return sum;
}

volatile float sink;

void readEverything(const Object3D& mesh) {
    sink = sumOf(mesh.texels.get(), 2 * std::int64_t{mesh.numTexels});
    sink = sumOf(mesh.faceColours.get(), 3 * std::int64_t{mesh.numFaces});
    sink = sumOf(mesh.vertexColours.get(), 3 * std::int64_t{mesh.numVertices});
    sink = sumOf(mesh.vertexNormals.get(), 3 * std::int64_t{mesh.numVertices});
    for (std::int64_t i = 0; mesh.texelIndex != nullptr && i < 3 * std::int64_t{mesh.numFaces}; ++i) {
        sink = static_cast<float>(mesh.texelIndex[static_cast<std::size_t>(i)]);
    }
}

}  // namespace

void loadAndUse(const char* name, const std::uint8_t* data, std::size_t size) try {
    const std::unique_ptr<Object3D> mesh = LoadMeshFile(writeInput(name, data, size));
    if (mesh == nullptr) {
        return;
    }
    checkIndices(*mesh);
    readEverything(*mesh);
    const std::unique_ptr<Object3D> surface = workingCopy(*mesh);
    readEverything(*surface);
    moveAlongNormals(*surface, -0.5F);
    surface->updateNormals(true);
    WriteObjFileWithNormals(*surface, "/dev/null");
} catch (const std::bad_alloc&) {
    return;
}

}  // namespace talvek::fuzz
