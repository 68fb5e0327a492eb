#include "talvek/picture/stone_picture.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <memory>
#include <vector>

#include "talvek/picture/legend.h"
#include "talvek/picture/stone_drawing.h"
#include "talvek/picture/view.h"
#include "talvek/results/displacement.h"
#include "talvek/support/messages.h"
#include "talvek/support/paths.h"

namespace talvek::host {

namespace {

/// Brightest behind the stone, a little darker towards the corners.
void drawBackground(Image& image) {
    constexpr Colour kMiddle = colourOf(0xF2F0EC);
    constexpr Colour kCorner = colourOf(0xE4E1DB);
    const double reach = std::hypot(image.width(), image.height()) / 2;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const double out = std::hypot(x - 0.52 * image.width(), y - 0.45 * image.height()) / reach;
            image.at(x, y) = kMiddle;
            image.paint(x, y, kCorner, static_cast<float>(std::min(1.0, out * out)));
        }
    }
}

/// What the colour bar and the writing leave free.
Box stoneBox(const Image& image) {
    const double size = drawingSize(image);
    const double left = image.width() > image.height() ? 200 * size : 40 * size;
    const double top = image.width() > image.height() ? 36 * size : 350 * size;
    return {left, top, std::max(image.width() - left - 60 * size, 1.0),
            std::max(image.height() - top - 110 * size, 1.0)};
}

std::string timeText(double days) {
    // A year of the models has 365 days.
    constexpr double kYear = 365;
    if (days < 2 * kYear) {
        return countOf(static_cast<std::uint64_t>(std::llround(days)), "day");
    }
    return briefNumber(days / kYear) + " years";
}

std::string signedText(double value) {
    return (value < 0 ? "−" : "") + briefNumber(std::abs(value));
}

std::string titleOf(const RunSeries& series, const SeriesSurface& surface) {
    const std::string name = nameOf(pathOf(series.source()).filename());
    return surface.epoch == 0 ? name + " before weathering" : name + " after " + timeText(surface.days);
}

/// "mean recession 1.57 mm, largest 1.7 mm"
std::string changeText(const ChangeScale& scale, const std::vector<double>& change) {
    std::vector<double> shown;
    shown.reserve(change.size());
    for (const double value : change) {
        shown.push_back(scale.shown(value));
    }
    const ValueStatistics statistics = statisticsOf(shown, std::vector<double>(shown.size(), 1.0));
    if (statistics.count == 0) {
        return "no vertex has a finite position";
    }
    const std::string mean = "mean " + scale.name() + " " + signedText(statistics.mean) + " mm, ";
    return scale.kind() == ChangeKind::kBoth
               ? mean + "from " + signedText(statistics.smallest) + " to " + signedText(statistics.largest) + " mm"
               : mean + "largest " + signedText(statistics.largest) + " mm";
}

std::string detailsOf(const RunSeries& series, const SeriesSurface& surface, const ChangeScale& scale,
                      const std::vector<double>& change) {
    const std::string text = "epoch " + std::to_string(surface.epoch) + " of " + std::to_string(series.numEpochs());
    return surface.epoch == 0 ? text : text + " · " + changeText(scale, change);
}

std::vector<float> placesOf(const ChangeScale& scale, const std::vector<double>& change) {
    std::vector<float> places;
    places.reserve(change.size());
    for (const double value : change) {
        places.push_back(static_cast<float>(scale.place(value)));
    }
    return places;
}

}  // namespace

Image drawStonePicture(const RunSeries& series, const PictureOptions& options) {
    const View view = viewOf(options.view, options.upAxis);
    const PalettePair& palette = paletteNamed(options.palette);
    const SeriesSurface& last = series.surfaces().back();
    const SeriesSurface& shown = options.epoch ? series.at(*options.epoch) : last;
    const std::unique_ptr<Object3D> first = series.read(series.at(0));
    const std::unique_ptr<Object3D> surface = series.read(shown);
    const std::vector<double> change = series.displacements(*first, *surface, shown);
    // One scale for all epochs, so that their pictures can be laid side by side.
    const ChangeScale scale(&shown == &last ? change : series.displacements(*first, *series.read(last), last), palette,
                            options.range);
    StoneColours colours;
    if (shown.epoch > 0) {
        colours = {placesOf(scale, change), [&scale](double place) { return scale.colourAt(place); }};
    }
    Image image(options.width, options.height);
    drawBackground(image);
    const double pixelsPerMillimetre = drawStone(image, stoneBox(image), *surface, view, colours);
    if (shown.epoch > 0) {
        drawColourBar(image, scale, change);
    }
    drawScaleBar(image, pixelsPerMillimetre);
    drawCaption(image, titleOf(series, shown), detailsOf(series, shown, scale, change));
    return image;
}

}  // namespace talvek::host
