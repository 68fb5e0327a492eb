#include "talvek/picture/stone_drawing.h"

#include <algorithm>
#include <cmath>

#include "talvek/picture/shading.h"
#include "talvek/picture/visible_surface.h"

namespace talvek::host {

namespace {

using Vector = Vector3<float>;

/// Amounts of light, which add up as colours do not.
struct Light {
    float red = 0, green = 0, blue = 0;
};

Light lightOfColour(const Colour& colour) {
    return {lightOf(colour.red), lightOf(colour.green), lightOf(colour.blue)};
}

constexpr Colour kBareStone = colourOf(0xD9D2C3);
constexpr Colour kInside = colourOf(0x8C8F98);

/// As many samples across a pixel as keep the buffers of a large picture small.
int samplesAcross(const Image& image) {
    constexpr double kManyPixels = 4e6;
    return static_cast<double>(image.width()) * image.height() > kManyPixels ? 2 : 3;
}

class StonePainter {
  public:
    StonePainter(const Object3D& mesh, const View& view, const StoneColours& colours, Projection projection,
                 VisibleSurface surface, int across)
        : mesh_(mesh),
          view_(view),
          places_(colours.places),
          projection_(std::move(projection)),
          surface_(std::move(surface)),
          across_(across) {
        for (std::size_t i = 0; !places_.empty() && i <= kTableSize; ++i) {
            table_.push_back(lightOfColour(colours.colourAt(static_cast<double>(i) / kTableSize)));
        }
    }

    void paint(Image& image) const {
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                paintPixel(image.at(x, y), x * across_, y * across_);
            }
        }
    }

  private:
    static constexpr std::size_t kTableSize = 1023;

    void paintPixel(Colour& pixel, int left, int top) const {
        Light sum;
        int covered = 0;
        float openness = -1;
        for (int y = top; y < top + across_; ++y) {
            for (int x = left; x < left + across_; ++x) {
                if (surface_.face(x, y) >= 0) {
                    const Light light = sample(x, y, openness);
                    sum = {sum.red + light.red, sum.green + light.green, sum.blue + light.blue};
                    ++covered;
                }
            }
        }
        if (covered > 0) {
            const auto count = static_cast<float>(across_ * across_);
            const float free = count - static_cast<float>(covered);
            const Light behind = lightOfColour(pixel);
            pixel = {channelOf((sum.red + free * behind.red) / count),
                     channelOf((sum.green + free * behind.green) / count),
                     channelOf((sum.blue + free * behind.blue) / count)};
        }
    }

    /// The openness is that of the pixel's first sample, found when it is negative.
    Light sample(int x, int y, float& openness) const {
        const std::size_t first = 3 * static_cast<std::size_t>(surface_.face(x, y));
        const std::int32_t* corners = mesh_.vertexIndex.get() + first;
        const FacePoints face = {{pointOf(corners[0]), pointOf(corners[1]), pointOf(corners[2])}};
        const auto shares = face.sharesAt(static_cast<float>(x) + 0.5F, static_cast<float>(y) + 0.5F);
        const auto& [a, b, c] = face.points;
        const bool isInside = (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x) > 0;
        const Vector normal = normalOf(corners, shares, isInside);
        if (openness < 0) {
            const float radius = 0.06F * static_cast<float>(std::min(surface_.width(), surface_.height()));
            openness = opennessAt(surface_, x, y, normal, radius);
        }
        const Light colour = isInside ? lightOfColour(kInside) : lightAt(corners, shares);
        const float brightness = brightnessOf(normal, openness);
        return {brightness * colour.red, brightness * colour.green, brightness * colour.blue};
    }

    const ScreenPoint& pointOf(std::int32_t vertex) const {
        return projection_.points[static_cast<std::size_t>(vertex)];
    }

    /// In the axes of the picture.
    Vector normalOf(const std::int32_t* corners, const std::array<float, 3>& shares, bool isInside) const {
        Vector sum{0, 0, 0};
        for (std::size_t k = 0; k < shares.size(); ++k) {
            sum = sum + tripleAt<float>(mesh_.vertexNormals.get(), corners[k]) * shares[k];
        }
        const auto in = Vector3<double>{sum.x, sum.y, sum.z};
        Vector seen = {static_cast<float>(dot(in, view_.right)), static_cast<float>(dot(in, view_.up)),
                       static_cast<float>(dot(in, view_.towards))};
        seen = isInside ? seen * -1.0F : seen;
        const float size = length(seen);
        return size > 0 && std::isfinite(size) ? seen / size : Vector{0, 0, 1};
    }

    Light lightAt(const std::int32_t* corners, const std::array<float, 3>& shares) const {
        float place = 0;
        for (std::size_t k = 0; !places_.empty() && k < shares.size(); ++k) {
            place += shares[k] * places_[static_cast<std::size_t>(corners[k])];
        }
        if (places_.empty() || !std::isfinite(place)) {
            return lightOfColour(kBareStone);
        }
        return table_[static_cast<std::size_t>(std::lround(std::clamp(place, 0.0F, 1.0F) * kTableSize))];
    }

    const Object3D& mesh_;
    const View& view_;
    std::span<const float> places_;
    Projection projection_;
    VisibleSurface surface_;
    int across_;
    std::vector<Light> table_;
};

}  // namespace

double drawStone(Image& image, const Box& box, const Object3D& mesh, const View& view, const StoneColours& colours) {
    const int across = samplesAcross(image);
    const Box sampleBox = {box.left * across, box.top * across, box.width * across, box.height * across};
    Projection projection = project(mesh, view, sampleBox);
    VisibleSurface surface(image.width() * across, image.height() * across);
    surface.draw(mesh.faceSpan(), projection.points);
    const double scale = projection.scale / across;
    StonePainter(mesh, view, colours, std::move(projection), std::move(surface), across).paint(image);
    return scale;
}

}  // namespace talvek::host
