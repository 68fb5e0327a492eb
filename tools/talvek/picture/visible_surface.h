// Which face is seen where: a depth buffer.
#pragma once

#include <array>
#include <cstdint>
#include <limits>
#include <span>
#include <vector>

#include "talvek/picture/view.h"

namespace talvek::host {

/// The three points of a face, and what of a sample's place belongs to each.
struct FacePoints {
    std::array<ScreenPoint, 3> points;

    /// Adds up to 1 within the face; not finite for a face that is seen from its edge.
    std::array<float, 3> sharesAt(float x, float y) const;
};

class VisibleSurface {
  public:
    static constexpr float kNothing = -std::numeric_limits<float>::infinity();

    VisibleSurface(int width, int height);

    /// Draws all faces. Those with a point that is not finite are left out.
    void draw(std::span<const std::int32_t> corners, std::span<const ScreenPoint> points);

    int width() const { return width_; }
    int height() const { return height_; }
    /// The number of the face that is seen at a sample; -1 where none is.
    std::int32_t face(int x, int y) const { return faces_[index(x, y)]; }
    /// kNothing where there is no face.
    float depth(int x, int y) const { return depths_[index(x, y)]; }

  private:
    std::size_t index(int x, int y) const {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(width_) + static_cast<std::size_t>(x);
    }
    void drawFace(std::int32_t face, const FacePoints& corners);

    int width_;
    int height_;
    std::vector<float> depths_;
    std::vector<std::int32_t> faces_;
};

}  // namespace talvek::host
