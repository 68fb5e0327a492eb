#include "talvek/picture/legend.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "talvek/picture/text.h"

namespace talvek::host {

namespace {

constexpr Colour kInk = colourOf(0x1C1E22);
constexpr Colour kFaint = colourOf(0x5E6470);
constexpr Colour kPaper = colourOf(0xFCFCFA);
constexpr Colour kShade = colourOf(0x6B6459);
constexpr Colour kBars = colourOf(0xA3A8B1);
constexpr std::size_t kBins = 48;

/// The places of a colour bar in a picture of 1000 pixels.
constexpr Box kCard = {20, 20, 178, 318};
constexpr Box kBar = {92, 66, 24, 246};
constexpr double kHistogramWidth = 54;

Box scaled(const Box& box, double size) {
    return {std::round(box.left * size), std::round(box.top * size), std::round(box.width * size),
            std::round(box.height * size)};
}

/// How many values lie in each of the parts of the scale; those outside are in the parts at its ends.
std::vector<std::size_t> histogramOf(const ChangeScale& scale, std::span<const double> displacements) {
    std::vector<std::size_t> counts(kBins, 0);
    for (const double displacement : displacements) {
        const double place = std::clamp(scale.place(displacement), 0.0, 1.0);
        if (std::isfinite(displacement)) {
            ++counts[std::min(static_cast<std::size_t>(place * kBins), kBins - 1)];
        }
    }
    return counts;
}

void drawCard(Image& image, const Box& card, double size) {
    constexpr int kShadowSteps = 6;
    for (int step = kShadowSteps; step > 0; --step) {
        const double grow = step * size;
        image.fill({card.left - grow, card.top - grow + 2 * size, card.width + 2 * grow, card.height + 2 * grow},
                   10 * size + grow, kShade, 0.015F);
    }
    image.fill(card, 10 * size, kPaper, 0.94F);
}

void drawHistogram(Image& image, const Box& bar, const std::vector<std::size_t>& counts, double size) {
    const std::size_t most = std::max<std::size_t>(*std::ranges::max_element(counts), 1);
    const double step = bar.height / static_cast<double>(kBins);
    for (std::size_t i = 0; i < counts.size(); ++i) {
        if (counts[i] > 0) {
            // Square roots show what is rare beside what is frequent.
            const double share = std::sqrt(static_cast<double>(counts[i]) / static_cast<double>(most));
            const double width = std::max(share * kHistogramWidth, 1.0) * size;
            image.fill(
                {bar.left - 5 * size - width, bar.bottom() - static_cast<double>(i + 1) * step, width, 0.8 * step}, 0,
                kBars);
        }
    }
}

void drawTicks(Image& image, const Box& bar, const ChangeScale& scale, double size) {
    const Type type{15 * size, Weight::kRegular, kInk};
    const ScaleRange& range = scale.range();
    for (const double tick : scale.ticks()) {
        const double y = bar.bottom() - (tick - range.from) / (range.to - range.from) * bar.height;
        image.fill({bar.right(), std::round(y - 0.75 * size), 6 * size, std::max(1.0, std::round(1.5 * size))}, 0,
                   kInk);
        drawText(image, bar.right() + 10 * size, y + 5.2 * size, scale.tickText(tick), type);
    }
}

/// The largest of 1, 2 and 5 times a power of ten that is not above the value.
double roundLength(double value) {
    const double power = std::pow(10, std::floor(std::log10(value)));
    return value >= 5 * power ? 5 * power : value >= 2 * power ? 2 * power : power;
}

std::string lengthText(double millimetres) {
    if (millimetres >= 1000) {
        return std::to_string(std::lround(millimetres / 1000)) + " m";
    }
    return millimetres >= 1 ? std::to_string(std::lround(millimetres)) + " mm"
                            : std::to_string(std::lround(millimetres * 1000)) + " µm";
}

}  // namespace

double drawingSize(const Image& image) {
    return std::max(0.4, std::min(image.width() / 1.2, static_cast<double>(image.height())) / 1000);
}

void drawColourBar(Image& image, const ChangeScale& scale, std::span<const double> displacements) {
    const double size = drawingSize(image);
    drawCard(image, scaled(kCard, size), size);
    drawText(image, (kCard.left + 16) * size, (kCard.top + 28) * size, scale.title(), {17 * size, Weight::kBold, kInk});
    const Box bar = scaled(kBar, size);
    for (int y = static_cast<int>(bar.top); y < static_cast<int>(bar.bottom()); ++y) {
        const double place = (bar.bottom() - y - 0.5) / bar.height;
        image.fill({bar.left, static_cast<double>(y), bar.width, 1}, 0, scale.colourAt(place));
    }
    drawHistogram(image, bar, histogramOf(scale, displacements), size);
    drawTicks(image, bar, scale, size);
}

void drawScaleBar(Image& image, double pixelsPerMillimetre) {
    const double size = drawingSize(image);
    const double length = roundLength(190 * size / pixelsPerMillimetre);
    const double width = length * pixelsPerMillimetre;
    const double line = std::max(1.0, std::round(2.5 * size));
    const double right = image.width() - 32 * size;
    const double bottom = std::round(image.height() - 34 * size);
    image.fill({right - width, bottom, width, line}, 0, kInk);
    image.fill({right - width, bottom - 9 * size, line, 9 * size}, 0, kInk);
    image.fill({right - line, bottom - 9 * size, line, 9 * size}, 0, kInk);
    const Type type{16 * size, Weight::kRegular, kInk};
    const std::string text = lengthText(length);
    drawText(image, right - width / 2 - textWidth(text, type) / 2, bottom - 9 * size, text, type);
}

void drawCaption(Image& image, const std::string& title, const std::string& details) {
    const double size = drawingSize(image);
    const double bottom = image.height() - 32 * size;
    drawText(image, 28 * size, bottom - 27 * size, title, {23 * size, Weight::kBold, kInk});
    drawText(image, 28 * size, bottom, details, {16 * size, Weight::kRegular, kFaint});
}

}  // namespace talvek::host
