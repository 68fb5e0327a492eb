#include <string>

#include "base/little_endian.h"
#include "base/output_file.h"
#include "talvek/formats/stl.h"

namespace talvek::host {

namespace {

constexpr std::size_t kTitleSize = 80;
constexpr std::size_t kTriangleSize = 50;

void writeHead(OutputFile& file, std::int32_t numTriangles) {
    // A title that begins with "solid" would make a text of it.
    std::string title = "made by talvek, lengths in millimetres";
    title.resize(kTitleSize, ' ');
    file.write(title);
    file.commit(toLittleEndian(file.reserve(sizeof numTriangles), numTriangles));
}

}  // namespace

bool writeStl(const Object3D& mesh, const std::string& path) {
    OutputFile file(path.c_str());
    writeHead(file, mesh.numFaces);
    for (std::size_t face = 0; face < static_cast<std::size_t>(mesh.numFaces); ++face) {
        char* out = file.reserve(kTriangleSize);
        for (std::size_t k = 0; k < 3; ++k) {
            out = toLittleEndian(out, mesh.faceNormals[3 * face + k]);
        }
        for (std::size_t k = 0; k < 3; ++k) {
            const std::size_t vertex = 3 * static_cast<std::size_t>(mesh.vertexIndex[3 * face + k]);
            for (std::size_t i = vertex; i < vertex + 3; ++i) {
                out = toLittleEndian(out, mesh.vertices[i]);
            }
        }
        *out++ = 0;
        *out++ = 0;
        file.commit(out);
    }
    return file.finish();
}

}  // namespace talvek::host
