#include "talvek/export/ply_frame.h"

#include <vector>

#include "talvek/export/binary_rows.h"
#include "talvek/export/export_failure.h"
#include "talvek/export/vertex_fields.h"

namespace talvek::host {

namespace {

std::string header(const PlySurface& surface) {
    std::string text = "ply\nformat binary_little_endian 1.0\ncomment made by talvek, lengths in millimetres\n";
    text += "comment " + surface.comment + "\n";
    text += "element vertex " + std::to_string(surface.mesh.numVertices) + "\n";
    for (const char* name : {"x", "y", "z", "nx", "ny", "nz", "quality"}) {
        text += std::string("property float ") + name + "\n";
    }
    for (const VertexField& field : surface.fields) {
        text += "property float scalar_" + field.name + "\n";
    }
    for (const char* name : {"red", "green", "blue"}) {
        text += surface.colours.empty() ? "" : std::string("property uchar ") + name + "\n";
    }
    text += "element face " + std::to_string(surface.mesh.numFaces) + "\nproperty list uchar int vertex_indices\n";
    return text + "end_header\n";
}

char* putTriple(char* out, const float* values) {
    return toLittleEndian(toLittleEndian(toLittleEndian(out, values[0]), values[1]), values[2]);
}

void writeVertices(OutputFile& file, const PlySurface& surface) {
    const std::size_t numNumbers = 7 + surface.fields.size();
    const std::size_t rowSize = numNumbers * sizeof(float) + (surface.colours.empty() ? 0 : sizeof(ColourBytes));
    writeRows(file, static_cast<std::size_t>(surface.mesh.numVertices), rowSize, [&surface](char* out, std::size_t v) {
        out = putTriple(out, surface.mesh.vertices.get() + 3 * v);
        out = putTriple(out, surface.mesh.vertexNormals.get() + 3 * v);
        out = toLittleEndian(out, surface.quality[v]);
        for (const VertexField& field : surface.fields) {
            out = toLittleEndian(out, field.values[v]);
        }
        if (!surface.colours.empty()) {
            *out++ = static_cast<char>(surface.colours[v].red);
            *out++ = static_cast<char>(surface.colours[v].green);
            *out++ = static_cast<char>(surface.colours[v].blue);
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

void writePlySurface(const PlySurface& surface, const std::string& path) {
    OutputFile file(path.c_str());
    file.write(header(surface));
    writeVertices(file, surface);
    writeFaces(file, surface.mesh);
    finishExport(file, path);
}

void writePlyFrame(const ExportFrame& frame, std::span<const ColourBytes> colours, const std::string& path) {
    std::vector<VertexField> fields = fieldsOf(frame);
    const std::vector<float> minerals(frame.minerals.begin(), frame.minerals.end());
    if (!minerals.empty()) {
        fields.push_back({"mineral", minerals});
    }
    writePlySurface({*frame.mesh, "epoch " + std::to_string(frame.surface.epoch), frame.displacements, fields, colours},
                    path);
}

}  // namespace talvek::host
