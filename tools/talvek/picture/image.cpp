#include "talvek/picture/image.h"

#include <algorithm>
#include <cmath>

namespace talvek::host {

void Image::paint(int x, int y, const Colour& colour, float cover) {
    if (x < 0 || y < 0 || x >= width_ || y >= height_) {
        return;
    }
    Colour& pixel = at(x, y);
    pixel.red += cover * (colour.red - pixel.red);
    pixel.green += cover * (colour.green - pixel.green);
    pixel.blue += cover * (colour.blue - pixel.blue);
}

void Image::fill(const Box& box, double radius, const Colour& colour, float cover) {
    const double middleX = box.left + box.width / 2;
    const double middleY = box.top + box.height / 2;
    for (int y = static_cast<int>(std::floor(box.top)); y < std::ceil(box.bottom()); ++y) {
        for (int x = static_cast<int>(std::floor(box.left)); x < std::ceil(box.right()); ++x) {
            // How far the pixel's middle lies outside the edge.
            const double outX = std::abs(x + 0.5 - middleX) - box.width / 2 + radius;
            const double outY = std::abs(y + 0.5 - middleY) - box.height / 2 + radius;
            const double outside =
                std::hypot(std::max(outX, 0.0), std::max(outY, 0.0)) + std::min(std::max(outX, outY), 0.0) - radius;
            paint(x, y, colour, cover * static_cast<float>(std::clamp(0.5 - outside, 0.0, 1.0)));
        }
    }
}

}  // namespace talvek::host
