#include <cstring>

#include "base/little_endian.h"
#include "base/output_file.h"
#include "mesh/texture.h"
#include "talvek/formats/ply.h"

namespace talvek::host {

namespace {

constexpr std::uint8_t kCorners = 3;

template <typename T>
void writeValue(OutputFile& file, T value) {
    file.commit(toLittleEndian(file.reserve(sizeof value), value));
}

void writeByte(OutputFile& file, std::uint8_t value) {
    file.writeBytes(&value, 1);
}

void writeHeader(OutputFile& file, const Object3D& mesh, bool byVertex, bool byCorner) {
    file.write("ply\nformat binary_little_endian 1.0\ncomment made by talvek, lengths in millimetres\n");
    file.write("element vertex " + std::to_string(mesh.numVertices) + "\n");
    for (const char* name : {"x", "y", "z", "nx", "ny", "nz"}) {
        file.write(std::string("property float ") + name + "\n");
    }
    if (byVertex) {
        file.write("property float s\nproperty float t\n");
    }
    file.write("element face " + std::to_string(mesh.numFaces) + "\nproperty list uchar int vertex_indices\n");
    if (byCorner) {
        file.write("property list uchar float texcoord\n");
    }
    file.write("end_header\n");
}

void writeVertices(OutputFile& file, const Object3D& mesh, bool withTexels) {
    for (std::size_t v = 0; v < static_cast<std::size_t>(mesh.numVertices); ++v) {
        for (std::size_t k = 3 * v; k < 3 * v + 3; ++k) {
            writeValue(file, mesh.vertices[k]);
        }
        for (std::size_t k = 3 * v; k < 3 * v + 3; ++k) {
            writeValue(file, mesh.vertexNormals[k]);
        }
        for (std::size_t k = 2 * v; withTexels && k < 2 * v + 2; ++k) {
            writeValue(file, mesh.texels[k]);
        }
    }
}

/// A corner without a texel gets (0, 0): the list has to be whole.
void writeTexel(OutputFile& file, const Object3D& mesh, std::int32_t texel) {
    for (std::size_t k = 0; k < 2; ++k) {
        writeValue(file, isTexel(mesh, texel) ? mesh.texels[2 * static_cast<std::size_t>(texel) + k] : 0.0F);
    }
}

void writeFaces(OutputFile& file, const Object3D& mesh, bool withTexels) {
    for (std::size_t i = 0; i < mesh.faceSpan().size(); i += kCorners) {
        writeByte(file, kCorners);
        for (std::size_t k = i; k < i + kCorners; ++k) {
            writeValue(file, mesh.vertexIndex[k]);
        }
        if (withTexels) {
            writeByte(file, 2 * kCorners);
            for (std::size_t k = i; k < i + kCorners; ++k) {
                writeTexel(file, mesh, cornerTexels(mesh)[k]);
            }
        }
    }
}

}  // namespace

bool hasTexelPerVertex(const Object3D& mesh) {
    return hasTexels(mesh) && mesh.numTexels == mesh.numVertices &&
           (mesh.texelIndex == nullptr ||
            std::memcmp(mesh.texelIndex.get(), mesh.vertexIndex.get(), mesh.faceSpan().size_bytes()) == 0);
}

bool writePly(const Object3D& mesh, const std::string& path) {
    const bool byVertex = hasTexelPerVertex(mesh);
    const bool byCorner = hasTexels(mesh) && !byVertex;
    OutputFile file(path.c_str());
    writeHeader(file, mesh, byVertex, byCorner);
    writeVertices(file, mesh, byVertex);
    writeFaces(file, mesh, byCorner);
    return file.finish();
}

}  // namespace talvek::host
