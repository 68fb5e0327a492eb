#include "support/mesh_file_writers.h"

#include <cstring>

namespace talvek::test {

namespace {

template <typename T>
std::string littleEndian(const std::vector<T>& values) {
    std::string bytes;
    for (const T value : values) {
        std::uint32_t bits = 0;
        std::memcpy(&bits, &value, sizeof bits);
        for (int shift = 0; shift < 32; shift += 8) {
            bytes += static_cast<char>(bits >> shift & 0xFF);
        }
    }
    return bytes;
}

/// First all first components, then all second ones, then all third ones.
template <typename T>
std::vector<T> planes(const std::vector<T>& triples) {
    std::vector<T> planar;
    for (std::size_t component = 0; component < 3; ++component) {
        for (std::size_t i = component; i < triples.size(); i += 3) {
            planar.push_back(triples[i]);
        }
    }
    return planar;
}

}  // namespace

const Floats Tetrahedron::kVertices = {0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 2};
const Ints Tetrahedron::kFaces = {0, 2, 1, 0, 1, 3, 1, 2, 3, 0, 3, 2};
const Floats Tetrahedron::kTexels = {0, 0, 0.25F, 0, 0, 0.5F, 0.75F, 1};
const Floats Tetrahedron::kColours = {0.1F, 0.2F, 0.3F, 0.4F, 0.5F, 0.6F, 0.7F, 0.8F, 0.9F, 0, 1, 0};
const Floats Tetrahedron::kNormals = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12};

std::string bytesOf(const Ints& values) {
    return littleEndian(values);
}

std::string bytesOf(const Floats& values) {
    return littleEndian(values);
}

std::string binBytes(const Floats& vertices, const Ints& faces) {
    return bytesOf(Ints{static_cast<std::int32_t>(vertices.size() / 3), static_cast<std::int32_t>(faces.size() / 3)}) +
           bytesOf(vertices) + bytesOf(faces);
}

std::string binLabel(const std::string& text, unsigned char marker) {
    std::string block = text;
    block.resize(19, '\0');
    return block + static_cast<char>(marker);
}

std::string sasHeader(std::int32_t version, std::int32_t numFaces, std::int32_t numVertices) {
    return bytesOf(Ints{version, numFaces, numVertices, 0, 20});
}

std::string sasTetrahedron(std::int32_t version, const std::string& texels) {
    return sasHeader(version, 4, 4) + bytesOf(Tetrahedron::kVertices) + bytesOf(Tetrahedron::kFaces) +
           bytesOf(Tetrahedron::kColours) + bytesOf(Tetrahedron::kNormals) + texels;
}

std::string legacySasTetrahedron() {
    return sasHeader(7777, 4, 4) + bytesOf(planes(Tetrahedron::kVertices)) + bytesOf(planes(Tetrahedron::kFaces)) +
           bytesOf(planes(Tetrahedron::kColours)) + bytesOf(planes(Tetrahedron::kNormals));
}

std::string fimBytes(std::int32_t width, std::int32_t height, std::int32_t channels, const Floats& pixels) {
    return bytesOf(Ints{width, height, channels}) + bytesOf(pixels);
}

Floats fimPlane(std::int32_t width, std::int32_t height) {
    Floats pixels;
    for (std::int32_t row = 0; row < height; ++row) {
        for (std::int32_t column = 0; column < width; ++column) {
            pixels.insert(pixels.end(), {static_cast<float>(10 + column), static_cast<float>(row), 5});
        }
    }
    return pixels;
}

std::string wrlTetrahedron() {
    return "#VRML V2.0 utf8\nShape { geometry IndexedFaceSet {\n"
           "coord Coordinate { point [ 0 0 0, 1 0 0, 0 1 0, 0 0 2 ] }\n"
           "coordIndex [ 0, 2, 1, -1, 0, 1, 3, -1, 1, 2, 3, -1, 0, 3, 2, -1 ]\n} }\n";
}

std::vector<SmallFile> smallMeshFiles() {
    const std::string texels = bytesOf(Tetrahedron::kTexels);
    const std::string texelIndex = bytesOf(Tetrahedron::kFaces);
    const std::string bin = binBytes(Tetrahedron::kVertices, Tetrahedron::kFaces);
    const std::string four = bytesOf(Ints{4});
    return {
        {"tetrahedron.obj",
         "v 0 0 0\nv 1 0 0\nv 0 1 0\nv 0 0 2\nvt 0 0\nvt 1 0\nvt 0 1\n"
         "f 1/1 3/3 2/2\nf 1 2 4\nf 2/2/1 3/3/1 4/1/1\nf 1//1 4//1 3//1\n"},
        {"plain.bin", bin},
        {"per-vertex.bin", bin + binLabel("stone", 0) + texels},
        {"indexed.bin", bin + binLabel("stone", 0xFF) + four + texels + texelIndex},
        {"legacy.sas", legacySasTetrahedron()},
        {"plain.sas", sasTetrahedron(7778)},
        {"per-vertex.sas", sasTetrahedron(7779, texels)},
        {"indexed.sas", sasTetrahedron(7780, four + texels + texelIndex)},
        {"plane.fim", fimBytes(4, 3, 3, fimPlane(4, 3))},
        {"plain.wrl", wrlTetrahedron()},
        {"everything.wrl",
         "Texture2 { filename \"a.png\" } Color { color [ 1 0 0, 0 1 0, 0 0 1, 1 1 1 ] }\n"
         "TextureCoordinate { point [ 0 0, 1 0, 0.5 1] }\n" +
             wrlTetrahedron() + "texCoordIndex [ 0 1 2 -1 0 1 2 -1 0 1 2 0 -1 ]\n"},
    };
}

}  // namespace talvek::test
