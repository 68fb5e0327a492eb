// The bracketed number lists of VRML text.
#pragma once

#include <cstdint>

#include "base/block_list.h"
#include "base/text_scanner.h"

namespace talvek {

/// What separates tokens. Brackets, braces, quotes and "#" are ordinary characters.
inline constexpr CharacterSet kWrlSeparators{std::string_view(" ,\t\0\n\r=", 7)};

/// Passes over tokens up to a lone "[". False when the file ends before.
bool openWrlList(TextScanner& scanner);

/// Reads numbers in groups of two or three up to a "]" that stands alone before a group or ends a group's last number.
/// A list that the file's end cuts keeps its complete groups. Throws std::bad_alloc.
void readWrlFloats(TextScanner& scanner, int groupSize, BlockList<float>& values);

/// Reads polygons, which -1 ends, as fans of triangles. Throws std::bad_alloc.
void readWrlTriangles(TextScanner& scanner, BlockList<std::int32_t>& corners);

}  // namespace talvek
