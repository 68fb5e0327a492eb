// Words in a picture.
#pragma once

#include <string_view>

#include "talvek/picture/image.h"

namespace talvek::host {

enum class Weight : unsigned char { kRegular, kBold };

struct Type {
    double size;
    Weight weight = Weight::kRegular;
    Colour colour{};
};

/// How wide a line of text is. It is UTF-8; what the font does not have, or is none, is shown as a replacement mark.
double textWidth(std::string_view text, const Type& type);

/// Writes a line from its left end on its base line.
void drawText(Image& image, double x, double baseLine, std::string_view text, const Type& type);

}  // namespace talvek::host
