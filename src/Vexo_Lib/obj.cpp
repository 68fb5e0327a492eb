#include "Vexo_Lib/obj.h"

#include <algorithm>
#include <cstdint>
#include <limits>

#include "Vexo_Lib/obj_lines.h"
#include "base/text_scanner.h"

namespace talvek {

namespace {

/// Files count from 1, or name nothing.
std::int32_t zeroBased(std::string_view number) {
    constexpr std::int32_t kSmallest = std::numeric_limits<std::int32_t>::min();
    return std::max(toInt(number), kSmallest + 1) - 1;
}

void readCorner(std::string_view token, ObjRecords& records) {
    const std::size_t slash = std::min(token.find('/'), token.size());
    const std::string_view afterSlash = token.substr(std::min(slash + 1, token.size()));
    records.addCorner(zeroBased(token.substr(0, slash)), zeroBased(afterSlash));
}

void readFace(TextScanner& scanner, ObjRecords& records) {
    std::string_view token;
    for (int corner = 0; corner < 3 && scanner.nextToken(token); ++corner) {
        readCorner(token, records);
    }
}

template <std::size_t N>
void readNumbers(TextScanner& scanner, float (&values)[N]) {
    for (float& value : values) {
        scanner.readFloat(value);
    }
}

void readRecord(std::string_view keyword, TextScanner& scanner, ObjRecords& records) {
    if (keyword == "v") {
        readNumbers(scanner, records.lastPosition);
        records.addPosition();
    } else if (keyword == "vt") {
        readNumbers(scanner, records.lastTexel);
        records.addTexel();
    } else if (keyword == "f") {
        readFace(scanner, records);
    }
}

/// Returns whether there were any.
bool readPlainLines(TextScanner& scanner, ObjRecords& records) {
    static_assert(TextScanner::kMargin >= kPlainLineMargin);
    const std::string_view ahead = scanner.ahead(kPlainLineWindow);
    const char* general = readPlainLines(ahead.data(), ahead.data() + ahead.size(), records);
    scanner.pass(static_cast<std::size_t>(general - ahead.data()));
    return general != ahead.data();
}

void readRecords(TextScanner& scanner, ObjRecords& records) {
    // What is not plain seldom stands alone, and looking for plain lines in vain takes as long as a general record.
    constexpr int kGeneralInARow = 8;
    std::string_view token;
    for (;;) {
        const int numGeneral = readPlainLines(scanner, records) ? 1 : kGeneralInARow;
        for (int i = 0; i < numGeneral; ++i) {
            if (!scanner.nextToken(token)) {
                return;
            }
            readRecord(token, scanner, records);
        }
    }
}

HeapArray<std::int32_t> takeTexelIndex(ObjRecords& records) {
    const std::int64_t without = records.leadingCornersWithoutTexel;
    const std::int64_t others = records.texelIndices.count();
    HeapArray<std::int32_t> index = makeArray<std::int32_t>(without + others);
    std::fill_n(index.get(), without, ObjRecords::kNoTexel);
    records.texelIndices.moveTo(index.get() + without, others);
    return index;
}

std::unique_ptr<Object3D> buildMesh(ObjRecords& records) {
    auto mesh = std::make_unique<Object3D>();
    mesh->numVertices = records.coordinates.recordCount(3);
    mesh->numTexels = records.texels.recordCount(2);
    mesh->numFaces = records.vertexIndices.recordCount(3);
    mesh->vertices = records.coordinates.takeArray();
    mesh->texels = records.texels.takeArray();
    mesh->vertexIndex = records.vertexIndices.takeArray();
    mesh->texelIndex = takeTexelIndex(records);
    return mesh;
}

}  // namespace

std::unique_ptr<Object3D> ReadObjFile(const char* path, bool /*flag*/) try {
    InputFile file(path);
    if (!file.isOpen()) {
        return nullptr;
    }
    ObjRecords records;
    records.expectTextOf(file.remaining());
    TextScanner scanner(file, kBlankSeparators);
    readRecords(scanner, records);
    return file.hasFailed() ? nullptr : buildMesh(records);
} catch (const std::bad_alloc&) {
    return nullptr;
}

}  // namespace talvek
