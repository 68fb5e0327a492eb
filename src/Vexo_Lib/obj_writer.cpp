#include "Vexo_Lib/obj.h"
#include "base/number_text.h"
#include "base/output_file.h"

namespace talvek {

namespace {

char* putText(char* out, std::string_view text) {
    std::memcpy(out, text.data(), text.size());
    return out + text.size();
}

void writeComment(OutputFile& file, std::int32_t count, std::string_view what) {
    char* out = file.reserve(kNumberTextSize);
    out = putText(out, "# ");
    out = formatInteger(out, count);
    out = putText(out, what);
    file.commit(putText(out, system::kLineEnd));
}

void writeLine(OutputFile& file, std::string_view text) {
    file.write(text);
    file.write(system::kLineEnd);
}

char* formatFixed5Triple(char* out, const float* values) {
    for (int i = 0; i < 3; ++i) {
        *out++ = ' ';
        out = formatFixed(out, static_cast<double>(values[i]), 5);
    }
    return out;
}

/// Writes a keyword and three numbers, each with a blank before it.
template <auto formatTriple>
void writeTriple(OutputFile& file, std::string_view keyword, const auto* triple) {
    char* out = file.reserve(4 * kNumberTextSize);
    out = formatTriple(putText(out, keyword), triple);
    file.commit(putText(out, system::kLineEnd));
}

void writeFaces(OutputFile& file, const Object3D& mesh) {
    const std::span<const std::int32_t> corners = mesh.faceSpan();
    for (std::size_t i = 0; i < corners.size(); i += 3) {
        writeTriple<formatFromOneTriple>(file, "f", &corners[i]);
    }
}

bool writeWithNormals(OutputFile& file, const Object3D& mesh) {
    const bool hasNormals = mesh.vertexNormals != nullptr;
    writeLine(file, "#");
    writeLine(file, "# Obj file created by QN Lib");
    writeLine(file, "#");
    writeComment(file, mesh.numVertices, " vertices");
    if (hasNormals) {
        writeComment(file, mesh.numVertices, " normals");
    }
    const std::span<const float> positions = mesh.vertexSpan();
    for (std::size_t i = 0; i < positions.size(); i += 3) {
        writeTriple<formatFixed6Triple>(file, "v", &positions[i]);
        if (hasNormals) {
            writeTriple<formatFixed6Triple>(file, "vn", &mesh.vertexNormals[i]);
        }
    }
    writeComment(file, mesh.numFaces, " triangles");
    writeFaces(file, mesh);
    return file.finish();
}

}  // namespace

bool WriteObjFile(const Object3D& mesh, const char* path) {
    OutputFile file(path);
    const std::span<const float> positions = mesh.vertexSpan();
    for (std::size_t i = 0; i < positions.size(); i += 3) {
        writeTriple<formatFixed5Triple>(file, "v", &positions[i]);
    }
    writeComment(file, mesh.numVertices, " vertices");
    writeFaces(file, mesh);
    writeComment(file, mesh.numFaces, " triangles");
    return file.finish();
}

bool WriteObjFileWithNormals(const Object3D& mesh, const char* path) {
    OutputFile file(path);
    return writeWithNormals(file, mesh);
}

bool writeObjFilesWithNormals(const Object3D& mesh, std::span<const std::string> paths) {
    OutputFile file(paths);
    return writeWithNormals(file, mesh);
}

}  // namespace talvek
