#include "talvek/picture/text.h"

#include <stb/stb_truetype.h>

#include <cmath>
#include <cstdint>
#include <vector>

namespace talvek::host {

extern const unsigned char kRegularFont[];
extern const unsigned char kBoldFont[];

namespace {

constexpr std::uint32_t kReplacement = 0xFFFD;

stbtt_fontinfo openFont(const unsigned char* bytes) {
    stbtt_fontinfo font;
    stbtt_InitFont(&font, bytes, 0);
    return font;
}

const stbtt_fontinfo& fontOf(Weight weight) {
    static const stbtt_fontinfo kRegular = openFont(kRegularFont);
    static const stbtt_fontinfo kBold = openFont(kBoldFont);
    return weight == Weight::kBold ? kBold : kRegular;
}

/// The number of bytes that a character takes which begins with this one; 0 for a byte that begins none.
std::size_t lengthOfCharacter(unsigned char first) {
    if (first < 0x80) {
        return 1;
    }
    if (first >= 0xC2 && first < 0xE0) {
        return 2;
    }
    if (first >= 0xE0 && first < 0xF0) {
        return 3;
    }
    return first >= 0xF0 && first < 0xF5 ? 4 : 0;
}

std::uint32_t takeCharacter(std::string_view& text) {
    const auto first = static_cast<unsigned char>(text[0]);
    const std::size_t length = lengthOfCharacter(first);
    std::uint32_t character = length < 2 ? first : first & (0xFFU >> (length + 1));
    bool isWhole = length > 0 && length <= text.size();
    for (std::size_t i = 1; isWhole && i < length; ++i) {
        const auto next = static_cast<unsigned char>(text[i]);
        isWhole = (next & 0xC0U) == 0x80;
        character = character << 6 | (next & 0x3FU);
    }
    text.remove_prefix(isWhole ? length : 1);
    return isWhole ? character : kReplacement;
}

int glyphOf(const stbtt_fontinfo& font, std::uint32_t character) {
    const int glyph = stbtt_FindGlyphIndex(&font, static_cast<int>(character));
    return glyph != 0 ? glyph : stbtt_FindGlyphIndex(&font, kReplacement);
}

/// Calls use(glyph, x) for each character, x being where it begins, and returns where the text ends.
template <typename Use>
double layOut(std::string_view text, const Type& type, Use use) {
    const stbtt_fontinfo& font = fontOf(type.weight);
    const double scale = static_cast<double>(stbtt_ScaleForMappingEmToPixels(&font, static_cast<float>(type.size)));
    double x = 0;
    while (!text.empty()) {
        const int glyph = glyphOf(font, takeCharacter(text));
        use(glyph, x);
        int advance = 0;
        stbtt_GetGlyphHMetrics(&font, glyph, &advance, nullptr);
        x += scale * advance;
    }
    return x;
}

void drawGlyph(Image& image, int glyph, double x, double baseLine, const Type& type) {
    const stbtt_fontinfo& font = fontOf(type.weight);
    const float scale = stbtt_ScaleForMappingEmToPixels(&font, static_cast<float>(type.size));
    const double left = std::floor(x);
    const double line = std::floor(baseLine);
    const auto shiftX = static_cast<float>(x - left);
    const auto shiftY = static_cast<float>(baseLine - line);
    int x0 = 0;
    int y0 = 0;
    int x1 = 0;
    int y1 = 0;
    stbtt_GetGlyphBitmapBoxSubpixel(&font, glyph, scale, scale, shiftX, shiftY, &x0, &y0, &x1, &y1);
    const int width = x1 - x0;
    const int height = y1 - y0;
    if (width <= 0 || height <= 0) {
        return;
    }
    std::vector<unsigned char> cover(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    stbtt_MakeGlyphBitmapSubpixel(&font, cover.data(), width, height, width, scale, scale, shiftX, shiftY, glyph);
    for (int v = 0; v < height; ++v) {
        for (int u = 0; u < width; ++u) {
            const std::size_t at =
                static_cast<std::size_t>(v) * static_cast<std::size_t>(width) + static_cast<std::size_t>(u);
            image.paint(static_cast<int>(left) + x0 + u, static_cast<int>(line) + y0 + v, type.colour,
                        static_cast<float>(cover[at]) / 255);
        }
    }
}

}  // namespace

double textWidth(std::string_view text, const Type& type) {
    return layOut(text, type, [](int, double) {});
}

void drawText(Image& image, double x, double baseLine, std::string_view text, const Type& type) {
    layOut(text, type, [&](int glyph, double from) { drawGlyph(image, glyph, x + from, baseLine, type); });
}

}  // namespace talvek::host
