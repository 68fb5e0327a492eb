#include "talvek/export/ply_frame.h"

#include <vector>

#include "talvek/export/binary_rows.h"
#include "talvek/export/export_failure.h"
#include "talvek/export/vertex_fields.h"

namespace talvek::host {

namespace {

std::string header(const ExportFrame& frame, const std::vector<VertexField>& fields, bool hasColours) {
    std::string text = "ply\nformat binary_little_endian 1.0\ncomment made by talvek, lengths in millimetres\n";
    text += "comment epoch " + std::to_string(frame.surface.epoch) + "\n";
    text += "element vertex " + std::to_string(frame.mesh->numVertices) + "\n";
    for (const char* name : {"x", "y", "z", "nx", "ny", "nz", "quality"}) {
        text += std::string("property float ") + name + "\n";
    }
    for (const VertexField& field : fields) {
        text += "property float scalar_" + field.name + "\n";
    }
    if (!frame.minerals.empty()) {
        text += "property float scalar_mineral\n";
    }
    for (const char* name : {"red", "green", "blue"}) {
        text += hasColours ? std::string("property uchar ") + name + "\n" : "";
    }
    text += "element face " + std::to_string(frame.mesh->numFaces) + "\nproperty list uchar int vertex_indices\n";
    return text + "end_header\n";
}

char* putTriple(char* out, const float* values) {
    return toLittleEndian(toLittleEndian(toLittleEndian(out, values[0]), values[1]), values[2]);
}

void writeVertices(OutputFile& file, const ExportFrame& frame, const std::vector<VertexField>& fields,
                   std::span<const ColourBytes> colours) {
    const std::size_t numNumbers = 7 + fields.size() + (frame.minerals.empty() ? 0 : 1);
    const std::size_t rowSize = numNumbers * sizeof(float) + (colours.empty() ? 0 : sizeof(ColourBytes));
    writeRows(file, frame.displacements.size(), rowSize, [&](char* out, std::size_t v) {
        out = putTriple(out, frame.mesh->vertices.get() + 3 * v);
        out = putTriple(out, frame.mesh->vertexNormals.get() + 3 * v);
        out = toLittleEndian(out, frame.displacements[v]);
        for (const VertexField& field : fields) {
            out = toLittleEndian(out, field.values[v]);
        }
        if (!frame.minerals.empty()) {
            out = toLittleEndian(out, static_cast<float>(frame.minerals[v]));
        }
        if (!colours.empty()) {
            *out++ = static_cast<char>(colours[v].red);
            *out++ = static_cast<char>(colours[v].green);
            *out++ = static_cast<char>(colours[v].blue);
        }
        return out;
    });
}

void writeFaces(OutputFile& file, const Object3D& mesh) {
    constexpr char kCorners = 3;
    const std::int32_t* corners = mesh.vertexIndex.get();
    writeRows(file, static_cast<std::size_t>(mesh.numFaces), 1 + kCorners * sizeof(std::int32_t),
              [corners](char* out, std::size_t face) {
                  *out++ = kCorners;
                  for (std::size_t k = 3 * face; k < 3 * face + 3; ++k) {
                      out = toLittleEndian(out, corners[k]);
                  }
                  return out;
              });
}

}  // namespace

void writePlyFrame(const ExportFrame& frame, std::span<const ColourBytes> colours, const std::string& path) {
    const std::vector<VertexField> fields = fieldsOf(frame);
    OutputFile file(path.c_str());
    file.write(header(frame, fields, !colours.empty()));
    writeVertices(file, frame, fields, colours);
    writeFaces(file, *frame.mesh);
    finishExport(file, path);
}

}  // namespace talvek::host
