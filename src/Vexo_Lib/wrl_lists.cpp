#include "Vexo_Lib/wrl_lists.h"

namespace talvek {

namespace {

void appendTriangle(BlockList<std::int32_t>& corners, std::int32_t a, std::int32_t b, std::int32_t c) {
    corners.append(a);
    corners.append(b);
    corners.append(c);
}

/// What stands where a corner of a polygon could.
enum class CornerKind : std::uint8_t { kIndex, kEndOfPolygon, kClosingBracket, kEndOfFile };

CornerKind readCorner(TextScanner& scanner, std::int32_t& index) {
    std::string_view token;
    if (!scanner.nextToken(token)) {
        return CornerKind::kEndOfFile;
    }
    if (token.ends_with(']')) {
        return CornerKind::kClosingBracket;
    }
    index = toInt(token);
    return index == -1 ? CornerKind::kEndOfPolygon : CornerKind::kIndex;
}

bool readIndex(TextScanner& scanner, std::int32_t& index) {
    std::string_view token;
    if (!scanner.nextToken(token)) {
        return false;
    }
    index = toInt(token);
    return true;
}

/// Reads one polygon whose first corner is known; false when the list ends with it.
bool readPolygon(TextScanner& scanner, std::int32_t first, BlockList<std::int32_t>& corners) {
    std::int32_t second = 0;
    std::int32_t previous = 0;
    if (!readIndex(scanner, second) || !readIndex(scanner, previous)) {
        return false;
    }
    appendTriangle(corners, first, second, previous);
    std::int32_t next = 0;
    CornerKind kind = readCorner(scanner, next);
    // Only directly behind a triangle does a closing bracket end the list; behind a longer polygon it is passed over.
    if (kind == CornerKind::kClosingBracket) {
        return false;
    }
    while (kind == CornerKind::kIndex) {
        appendTriangle(corners, first, previous, next);
        previous = next;
        kind = readCorner(scanner, next);
    }
    return kind != CornerKind::kEndOfFile;
}

}  // namespace

bool openWrlList(TextScanner& scanner) {
    std::string_view token;
    while (scanner.nextToken(token)) {
        if (token == "[") {
            return true;
        }
    }
    return false;
}

void readWrlFloats(TextScanner& scanner, int groupSize, BlockList<float>& values) {
    std::string_view token;
    bool isLast = false;
    while (!isLast && scanner.nextToken(token) && token != "]") {
        float group[3] = {static_cast<float>(toDouble(token))};
        for (int i = 1; i < groupSize; ++i) {
            if (!scanner.nextToken(token)) {
                return;
            }
            group[i] = static_cast<float>(toDouble(token));
        }
        isLast = token.ends_with(']');
        for (int i = 0; i < groupSize; ++i) {
            values.append(group[i]);
        }
    }
}

void readWrlTriangles(TextScanner& scanner, BlockList<std::int32_t>& corners) {
    std::string_view token;
    while (scanner.nextToken(token) && token != "]") {
        if (!readPolygon(scanner, toInt(token), corners)) {
            return;
        }
    }
}

}  // namespace talvek
