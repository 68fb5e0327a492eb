#include "Vexo_Lib/obj.h"

#include <algorithm>
#include <cstdint>
#include <limits>

#include "base/block_list.h"
#include "base/text_scanner.h"

namespace talvek {

namespace {

/// The values of the records, in the order of the file.
struct ObjRecords {
    BlockList<float> coordinates;
    BlockList<float> texels;
    BlockList<std::int32_t> vertexIndices;
    BlockList<std::int32_t> texelIndices;
};

/// A record without a number takes the one that its kind had last.
struct LastValues {
    float position[3] = {};
    float texel[2] = {};
};

template <std::size_t N>
void readValues(TextScanner& scanner, float (&values)[N], BlockList<float>& list) {
    for (float& value : values) {
        scanner.readFloat(value);
    }
    for (const float value : values) {
        list.append(value);
    }
}

/// Files count from 1, or name nothing.
std::int32_t zeroBased(std::string_view number) {
    constexpr std::int32_t kSmallest = std::numeric_limits<std::int32_t>::min();
    return std::max(toInt(number), kSmallest + 1) - 1;
}

void readCorner(std::string_view token, ObjRecords& records) {
    const std::size_t slash = std::min(token.find('/'), token.size());
    const std::string_view afterSlash = token.substr(std::min(slash + 1, token.size()));
    records.vertexIndices.append(zeroBased(token.substr(0, slash)));
    records.texelIndices.append(zeroBased(afterSlash));
}

void readFace(TextScanner& scanner, ObjRecords& records) {
    std::string_view token;
    for (int corner = 0; corner < 3 && scanner.nextToken(token); ++corner) {
        readCorner(token, records);
    }
}

void readRecords(TextScanner& scanner, ObjRecords& records) {
    LastValues last;
    std::string_view token;
    while (scanner.nextToken(token)) {
        if (token == "v") {
            readValues(scanner, last.position, records.coordinates);
        } else if (token == "vt") {
            readValues(scanner, last.texel, records.texels);
        } else if (token == "f") {
            readFace(scanner, records);
        }
    }
}

std::unique_ptr<Object3D> buildMesh(ObjRecords& records) {
    auto mesh = std::make_unique<Object3D>();
    mesh->numVertices = records.coordinates.recordCount(3);
    mesh->numTexels = records.texels.recordCount(2);
    mesh->numFaces = records.vertexIndices.recordCount(3);
    mesh->vertices = records.coordinates.takeArray();
    mesh->texels = records.texels.takeArray();
    mesh->vertexIndex = records.vertexIndices.takeArray();
    mesh->texelIndex = records.texelIndices.takeArray();
    return mesh;
}

}  // namespace

std::unique_ptr<Object3D> ReadObjFile(const char* path, bool /*flag*/) try {
    InputFile file(path);
    if (!file.isOpen()) {
        return nullptr;
    }
    ObjRecords records;
    TextScanner scanner(file, kBlankSeparators);
    readRecords(scanner, records);
    return file.hasFailed() ? nullptr : buildMesh(records);
} catch (const std::bad_alloc&) {
    return nullptr;
}

}  // namespace talvek
