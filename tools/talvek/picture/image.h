// A picture of three channels, and simple shapes painted over what is there.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "talvek/results/palette.h"

namespace talvek::host {

struct Box {
    double left, top, width, height;

    double right() const { return left + width; }
    double bottom() const { return top + height; }
};

class Image {
  public:
    Image(int width, int height)
        : width_(width), height_(height), pixels_(static_cast<std::size_t>(width) * static_cast<std::size_t>(height)) {}

    int width() const { return width_; }
    int height() const { return height_; }
    Colour& at(int x, int y) {
        return pixels_[static_cast<std::size_t>(y) * static_cast<std::size_t>(width_) + static_cast<std::size_t>(x)];
    }
    std::span<const Colour> row(int y) const {
        const auto length = static_cast<std::size_t>(width_);
        return std::span(pixels_).subspan(static_cast<std::size_t>(y) * length, length);
    }

    /// Lays a colour over a pixel, `cover` of it in [0, 1]. Outside the picture it does nothing.
    void paint(int x, int y, const Colour& colour, float cover);

    /// A box with its corners rounded; edges may lie between pixels.
    void fill(const Box& box, double radius, const Colour& colour, float cover = 1);

  private:
    int width_;
    int height_;
    std::vector<Colour> pixels_;
};

}  // namespace talvek::host
