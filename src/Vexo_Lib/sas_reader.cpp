#include "Vexo_Lib/sas_encoding.h"

namespace talvek {

namespace {

/// Throws std::bad_alloc when the counts cannot be true.
std::unique_ptr<Object3D> startMesh(const BinaryFile& file, const SasHeader& header, const char* path) {
    file.expect(3 * std::int64_t{header.numVertices} + 9 * std::int64_t{header.numFaces});
    auto mesh = std::make_unique<Object3D>();
    setText(mesh->name, path);
    mesh->flag = 0;
    mesh->numFaces = header.numFaces;
    mesh->numVertices = header.numVertices;
    return mesh;
}

/// Reads three arrays of one component each into an array of triples.
template <typename T>
HeapArray<T> readPlanes(BinaryFile& file, std::int64_t count) {
    HeapArray<T> triples = makeZeroedArray<T>(3 * count);
    for (std::int64_t component = 0; component < 3; ++component) {
        const HeapArray<T> plane = file.readArray<T>(count);
        for (std::int64_t i = 0; i < count; ++i) {
            triples[static_cast<std::size_t>(3 * i + component)] = plane[static_cast<std::size_t>(i)];
        }
    }
    return triples;
}

}  // namespace

SasHeader readSasHeader(BinaryFile& file) {
    SasHeader header;
    header.version = file.readInt();
    header.numFaces = file.readInt();
    header.numVertices = file.readInt();
    file.readInt();
    file.readInt();
    return header;
}

std::unique_ptr<Object3D> readPlanarSas(BinaryFile& file, const SasHeader& header, const char* path) {
    std::unique_ptr<Object3D> mesh = startMesh(file, header, path);
    mesh->vertices = readPlanes<float>(file, header.numVertices);
    mesh->vertexIndex = readPlanes<std::int32_t>(file, header.numFaces);
    mesh->faceColours = readPlanes<float>(file, header.numFaces);
    mesh->faceNormals = readPlanes<float>(file, header.numFaces);
    return mesh;
}

std::unique_ptr<Object3D> readInterleavedSas(BinaryFile& file, const SasHeader& header, const char* path) {
    std::unique_ptr<Object3D> mesh = startMesh(file, header, path);
    const std::int64_t faceValues = 3 * std::int64_t{header.numFaces};
    const std::int64_t vertexValues = 3 * std::int64_t{header.numVertices};
    // The vertex array has room for one vertex more.
    mesh->vertices = file.readArray<float>(vertexValues, 3);
    mesh->vertexIndex = file.readArray<std::int32_t>(faceValues);
    mesh->faceColours = file.readArray<float>(faceValues);
    mesh->faceNormals = file.readArray<float>(faceValues);
    if (header.version == SasHeader::kTexelPerVertex) {
        mesh->numTexels = mesh->numVertices;
        mesh->texels = file.readArray<float>(2 * std::int64_t{mesh->numTexels});
        mesh->texelIndex = copyArray(mesh->vertexIndex.get(), faceValues);
    } else if (header.version == SasHeader::kTexelIndex) {
        mesh->numTexels = file.readInt();
        mesh->texels = file.readArray<float>(2 * std::int64_t{mesh->numTexels});
        mesh->texelIndex = file.readArray<std::int32_t>(faceValues);
    }
    return mesh;
}

}  // namespace talvek
