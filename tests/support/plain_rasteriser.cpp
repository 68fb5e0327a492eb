#include "support/plain_rasteriser.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace talvek::test {

namespace {

constexpr int kSize = 460;

struct Corner {
    float u, v;
    const float* value;
    int column() const { return cell(460.0F * u); }
    int row() const { return cell(460.0F * v); }

  private:
    /// Beyond these numbers, which are beyond the grid, it does not matter where.
    static int cell(float place) { return static_cast<int>(std::clamp(place, -1000.0F, 1000.0F)); }
};

float crossProduct(float qu, float qt, float ru, float rt) {
    return qu * rt - qt * ru;
}

float distanceToLine(float u, float v, const Corner& q, const Corner& r) {
    const float du = r.u - q.u;
    const float dv = r.v - q.v;
    return std::fabs(crossProduct(q.u - u, q.v - v, r.u - u, r.v - v)) / std::sqrt(du * du + dv * dv);
}

bool isLeft(float u, float v, const Corner& q, const Corner& r) {
    return crossProduct(q.u - u, q.v - v, r.u - u, r.v - v) >= 0;
}

void drawCell(std::vector<float>& grid, int x, int y, const Corner& a, const Corner& b, const Corner& c) {
    const float u = static_cast<float>(x) / 460.0F;
    const float v = static_cast<float>(y) / 460.0F;
    if (!isLeft(u, v, a, b) || !isLeft(u, v, b, c) || !isLeft(u, v, c, a)) {
        return;
    }
    const float weightA = distanceToLine(u, v, b, c) / distanceToLine(a.u, a.v, b, c);
    const float weightB = distanceToLine(u, v, c, a) / distanceToLine(b.u, b.v, c, a);
    const float weightC = distanceToLine(u, v, a, b) / distanceToLine(c.u, c.v, a, b);
    for (std::size_t k = 0; k < 3; ++k) {
        grid[3 * static_cast<std::size_t>(kSize * y + x) + k] =
            weightA * a.value[k] + weightB * b.value[k] + weightC * c.value[k];
    }
}

bool hasNoExtent(const Corner& a, const Corner& b, const Corner& c) {
    return !(distanceToLine(a.u, a.v, b, c) > 0) || !(distanceToLine(b.u, b.v, c, a) > 0) ||
           !(distanceToLine(c.u, c.v, a, b) > 0);
}

void drawFace(std::vector<float>& grid, const Corner& a, const Corner& b, const Corner& c) {
    if (hasNoExtent(a, b, c)) {
        return;
    }
    const int xmin = std::min({std::min(a.column(), kSize), b.column(), c.column()});
    const int xmax = std::max({std::max(a.column(), 0), b.column(), c.column()});
    const int ymin = std::min({std::min(a.row(), kSize), b.row(), c.row()});
    const int ymax = std::max({std::max(a.row(), 0), b.row(), c.row()});
    for (int y = std::max(ymin, 0); y <= std::min(ymax, kSize - 1); ++y) {
        for (int x = std::max(xmin, 0); x <= std::min(xmax, kSize - 1); ++x) {
            drawCell(grid, x, y, a, b, c);
        }
    }
}

}  // namespace

std::vector<float> plainRaster(const Object3D& mesh, const float* attribute) {
    std::vector<float> grid(std::size_t{3} * kSize * kSize);
    const std::int32_t* texels = mesh.texelIndex != nullptr ? mesh.texelIndex.get() : mesh.vertexIndex.get();
    for (std::size_t i = 0; i < mesh.faceSpan().size(); i += 3) {
        Corner corners[3];
        bool isWhole = true;
        for (std::size_t k = 0; k < 3; ++k) {
            const std::int32_t texel = texels[i + k];
            isWhole = isWhole && texel >= 0 && texel < mesh.numTexels;
            if (isWhole) {
                const float* uv = mesh.texels.get() + 2 * static_cast<std::size_t>(texel);
                corners[k] = {uv[0], uv[1], attribute + 3 * static_cast<std::size_t>(mesh.faceSpan()[i + k])};
                isWhole = std::isfinite(uv[0]) && std::isfinite(uv[1]);
            }
        }
        if (isWhole) {
            drawFace(grid, corners[0], corners[1], corners[2]);
        }
    }
    return grid;
}

}  // namespace talvek::test
