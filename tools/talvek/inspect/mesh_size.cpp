#include "talvek/inspect/mesh_size.h"

#include <cmath>
#include <limits>

#include "talvek/support/messages.h"

namespace talvek::host {

std::string MeshSize::text() const {
    return briefNumber(extents[0]) + " x " + briefNumber(extents[1]) + " x " + briefNumber(extents[2]) + " mm";
}

MeshSize sizeOf(const Object3D& mesh) {
    constexpr float kInfinity = std::numeric_limits<float>::infinity();
    std::array<float, 3> low = {kInfinity, kInfinity, kInfinity};
    std::array<float, 3> high = {-kInfinity, -kInfinity, -kInfinity};
    for (std::size_t i = 0; i < mesh.vertexSpan().size(); ++i) {
        const float coordinate = mesh.vertexSpan()[i];
        if (std::isfinite(coordinate)) {
            low[i % 3] = std::min(low[i % 3], coordinate);
            high[i % 3] = std::max(high[i % 3], coordinate);
        }
    }
    MeshSize size;
    for (std::size_t k = 0; k < low.size(); ++k) {
        size.extents[k] = high[k] >= low[k] ? static_cast<double>(high[k]) - static_cast<double>(low[k]) : 0;
    }
    return size;
}

double spacingAt(double coordinate) {
    const auto number = static_cast<float>(coordinate);
    return static_cast<double>(std::nextafter(number, std::numeric_limits<float>::infinity())) - coordinate;
}

std::array<double, 3> largestCoordinates(const Object3D& mesh) {
    std::array<double, 3> largest{};
    for (std::size_t i = 0; i < mesh.vertexSpan().size(); ++i) {
        const double size = std::abs(static_cast<double>(mesh.vertexSpan()[i]));
        largest[i % 3] = std::isfinite(size) ? std::max(largest[i % 3], size) : largest[i % 3];
    }
    return largest;
}

}  // namespace talvek::host
