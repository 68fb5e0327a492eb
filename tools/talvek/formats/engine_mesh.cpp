// BIN is what the library reads fastest, and it keeps every bit of positions and texture coordinates.
#include "talvek/formats/engine_mesh.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "Vexo_Lib/mesh_formats.h"
#include "base/input_file.h"
#include "base/little_endian.h"
#include "base/output_file.h"
#include "base/system.h"
#include "talvek/support/exit_status.h"

namespace talvek::host {

namespace {

/// The format has room for a name of 19 characters, behind which it says whether texture coordinates follow.
constexpr std::string_view kLabel = "talvek engine mesh";
constexpr std::size_t kLabelSize = 20;

std::string labelBlock(bool hasTexels) {
    std::string block(kLabel);
    block.resize(kLabelSize, '\0');
    block.back() = hasTexels ? '\xFF' : '\0';
    return block;
}

template <typename T>
void writeValues(OutputFile& file, const T* values, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        file.commit(toLittleEndian(file.reserve(sizeof(T)), values[i]));
    }
}

void writeTexels(OutputFile& file, const Object3D& mesh) {
    writeValues(file, &mesh.numTexels, 1);
    writeValues(file, mesh.texels.get(), 2 * static_cast<std::size_t>(mesh.numTexels));
    writeValues(file, mesh.texelIndex.get(), mesh.faceSpan().size());
}

bool isSameTexture(const Object3D& a, const Object3D& b) {
    const auto texelOf = [](const Object3D& mesh, std::size_t corner) -> const float* {
        const std::int32_t texel = mesh.texelIndex != nullptr ? mesh.texelIndex[corner] : -1;
        const bool isThere = mesh.texels != nullptr && texel >= 0 && texel < mesh.numTexels;
        return isThere ? mesh.texels.get() + 2 * static_cast<std::size_t>(texel) : nullptr;
    };
    for (std::size_t corner = 0; corner < a.faceSpan().size(); ++corner) {
        const float* of = texelOf(a, corner);
        const float* other = texelOf(b, corner);
        const bool isSame = of == nullptr || other == nullptr
                                ? of == other
                                : std::bit_cast<std::uint32_t>(of[0]) == std::bit_cast<std::uint32_t>(other[0]) &&
                                      std::bit_cast<std::uint32_t>(of[1]) == std::bit_cast<std::uint32_t>(other[1]);
        if (!isSame) {
            return false;
        }
    }
    return true;
}

bool isSameMesh(const Object3D& a, const Object3D& b) {
    return a.numVertices == b.numVertices && a.numFaces == b.numFaces &&
           std::memcmp(a.vertices.get(), b.vertices.get(), a.vertexSpan().size_bytes()) == 0 &&
           std::memcmp(a.vertexIndex.get(), b.vertexIndex.get(), a.faceSpan().size_bytes()) == 0 && isSameTexture(a, b);
}

/// Some bytes of a file; fewer where it ends.
std::string readAt(const std::string& path, std::int64_t offset, std::size_t size) {
    system::File file = system::File::openForReading(path.c_str());
    std::string bytes(size, '\0');
    const std::int64_t got = file.isOpen() && file.skip(offset) ? file.read(bytes.data(), size) : 0;
    bytes.resize(static_cast<std::size_t>(std::max<std::int64_t>(got, 0)));
    return bytes;
}

/// Null where the library refuses the file.
std::unique_ptr<Object3D> readByLibrary(const std::string& source) {
    if (meshFormatOf(source) == nullptr || lowerCaseExtension(source) != meshExtension(source)) {
        return nullptr;
    }
    std::unique_ptr<Object3D> mesh = readUnchecked(source);
    return mesh != nullptr && firstBadCorner(*mesh) < 0 ? std::move(mesh) : nullptr;
}

}  // namespace

EngineMesh readEngineMesh(const std::string& source, const ImportOptions& options) {
    EngineMesh engine{.loaded = loadMesh(source, options)};
    const std::unique_ptr<Object3D> native = readByLibrary(source);
    engine.isSource = native != nullptr && isSameMesh(*native, *engine.loaded.mesh);
    return engine;
}

std::string engineMeshName(const std::string& source) {
    return source + ".bin";
}

void requireReplaceableEngineMesh(const std::string& path) {
    if (system::kindOf(path.c_str()) == system::FileKind::kAbsent) {
        return;
    }
    InputFile file(path.c_str());
    std::int32_t counts[2] = {};
    const bool isCounted = file.read(counts, sizeof counts) == sizeof counts;
    fromLittleEndianInPlace(counts, 2);
    const std::int64_t before = std::int64_t{sizeof counts} + 12 * (std::int64_t{counts[0]} + counts[1]);
    std::string block;
    if (isCounted && counts[0] >= 0 && counts[1] >= 0) {
        block = readAt(path, before, kLabel.size());
    }
    if (block != kLabel) {
        throw Failure(kExitRefused,
                      path + ": the mesh for the simulation would stand here, and another file does; move it away");
    }
}

void writeEngineMesh(const Object3D& mesh, const std::string& path) {
    OutputFile file(path.c_str());
    writeValues(file, &mesh.numVertices, 1);
    writeValues(file, &mesh.numFaces, 1);
    writeValues(file, mesh.vertices.get(), mesh.vertexSpan().size());
    writeValues(file, mesh.vertexIndex.get(), mesh.faceSpan().size());
    const bool hasTexels = mesh.texelIndex != nullptr && mesh.numTexels > 0;
    file.write(labelBlock(hasTexels));
    if (hasTexels) {
        writeTexels(file, mesh);
    }
    if (!file.finish()) {
        throw Failure(kExitOutput, path + ": the mesh for the simulation cannot be written; look for room on the disk");
    }
}

}  // namespace talvek::host
