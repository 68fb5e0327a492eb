#include "Vexo_Lib/bin.h"

#include <string_view>

#include "Vexo_Lib/error_report.h"
#include "base/binary_file.h"

namespace talvek {

namespace {

/// A text of at most 19 characters, and how the texels are laid out.
struct LabelBlock {
    static constexpr std::size_t kSize = 20;
    char bytes[kSize];

    std::string_view text() const {
        const std::string_view field(bytes, kSize - 1);
        return field.substr(0, field.find('\0'));
    }
    bool hasTexelIndex() const { return bytes[kSize - 1] == '\xFF'; }
};

void readTexelsWithIndex(BinaryFile& file, Object3D& mesh) {
    mesh.numTexels = file.readInt();
    mesh.texels = file.readArray<float>(2 * std::int64_t{mesh.numTexels});
    mesh.texelIndex = file.readArray<std::int32_t>(3 * std::int64_t{mesh.numFaces});
}

/// One texel for each vertex. The section may be missing: then the mesh has no label either.
bool readTexelPerVertex(BinaryFile& file, Object3D& mesh) {
    mesh.texels = file.readWholeArray<float>(2 * std::int64_t{mesh.numVertices});
    if (mesh.texels == nullptr) {
        return false;
    }
    mesh.numTexels = mesh.numVertices;
    mesh.texelIndex = copyArray(mesh.vertexIndex.get(), 3 * std::int64_t{mesh.numFaces});
    return true;
}

}  // namespace

std::unique_ptr<Object3D> ReadBinFile(const char* path) try {
    BinaryFile file(path);
    if (!file.isOpen()) {
        reportError(TALVEK_HERE, "ERROR: Cannot open ", path);
        return nullptr;
    }
    auto mesh = std::make_unique<Object3D>();
    mesh->numVertices = file.readInt();
    mesh->numFaces = file.readInt();
    file.expect(3 * (std::int64_t{mesh->numVertices} + mesh->numFaces));
    mesh->vertices = file.readArray<float>(3 * std::int64_t{mesh->numVertices});
    mesh->vertexIndex = file.readArray<std::int32_t>(3 * std::int64_t{mesh->numFaces});
    LabelBlock label;
    file.readBytes(label.bytes, sizeof label.bytes);
    if (label.hasTexelIndex()) {
        readTexelsWithIndex(file, *mesh);
        setText(mesh->label, label.text());
    } else if (readTexelPerVertex(file, *mesh)) {
        setText(mesh->label, label.text());
    }
    return mesh;
} catch (const std::bad_alloc&) {
    reportError(TALVEK_HERE, "damaged file ", path);
    return nullptr;
}

}  // namespace talvek
