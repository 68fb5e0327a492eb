#include <algorithm>

#include "Vexo_Lib/sas_encoding.h"

namespace talvek {

namespace {

template <typename T>
void writeValue(OutputFile& file, T value) {
    file.commit(toLittleEndian(file.reserve(sizeof value), value));
}

/// Writes `count` values: the first `present` ones are the array's, the others 0.
template <typename T>
void writeArray(OutputFile& file, const HeapArray<T>& array, std::int64_t count, std::int64_t present) {
    const std::int64_t own = array != nullptr ? std::min(count, present) : 0;
    for (std::int64_t i = 0; i < count; ++i) {
        writeValue(file, i < own ? array[static_cast<std::size_t>(i)] : T{});
    }
}

template <typename T>
void writeArray(OutputFile& file, const HeapArray<T>& array, std::int64_t count) {
    writeArray(file, array, count, count);
}

std::int32_t versionFor(const Object3D& mesh) {
    if (mesh.texels == nullptr) {
        return SasHeader::kWithoutTexels;
    }
    return mesh.texelIndex != nullptr ? SasHeader::kTexelIndex : SasHeader::kTexelPerVertex;
}

}  // namespace

void writeInterleavedSas(OutputFile& file, const Object3D& mesh) {
    const std::int32_t version = versionFor(mesh);
    for (const std::int32_t word : {version, mesh.numFaces, mesh.numVertices, std::int32_t{0}, SasHeader::kSize}) {
        writeValue(file, word);
    }
    const std::int64_t faceValues = 3 * std::int64_t{mesh.numFaces};
    writeArray(file, mesh.vertices, 3 * std::int64_t{mesh.numVertices});
    writeArray(file, mesh.vertexIndex, faceValues);
    writeArray(file, mesh.faceColours, faceValues);
    writeArray(file, mesh.faceNormals, faceValues);
    const std::int64_t texelValues = 2 * std::int64_t{mesh.numTexels};
    if (version == SasHeader::kTexelPerVertex) {
        writeArray(file, mesh.texels, 2 * std::int64_t{mesh.numVertices}, texelValues);
    } else if (version == SasHeader::kTexelIndex) {
        writeValue(file, mesh.numTexels);
        writeArray(file, mesh.texels, texelValues);
        writeArray(file, mesh.texelIndex, faceValues);
    }
}

}  // namespace talvek
