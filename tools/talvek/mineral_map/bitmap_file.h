// Windows bitmaps by their headers, and the one kind of them that a mineral map has to be.
#pragma once

#include <string>
#include <string_view>

#include "talvek/mineral_map/picture.h"

namespace talvek::host {

/// As many bytes of a file as tell its kind.
inline constexpr std::size_t kBitmapHeadersSize = 54;

enum class BitmapKind : std::uint8_t {
    kNone,
    /// Uncompressed, 24 bits per pixel, the bottom row first: what the library reads.
    kPlain,
    /// The same with the top row first.
    kTopDown,
    kOther,
};

/// Looks at the first bytes of a file.
BitmapKind bitmapKindOf(std::string_view bytes);

/// Whether a bitmap ends before its last pixel. A compressed one cannot tell.
bool isCutBitmap(std::string_view bytes);

/// The picture as a plain bitmap.
std::string plainBitmap(const Picture& picture);

}  // namespace talvek::host
