#include "support/plain_delta_grid.h"

#include "weathering/mineral_classes.h"

namespace talvek::test {

namespace {

struct Pixel {
    float p0, p1, p2;
};

}  // namespace

std::vector<float> plainDeltas(const MineralMap& map, double delta) {
    std::vector<float> out(460 * 460);
    Pixel slots[4] = {};
    for (int c = 0; c < 460; ++c) {
        for (int r = 0; r < 460; ++r) {
            const double fx = static_cast<double>(c) * map.width / 460;
            const double fy = static_cast<double>(r) * map.height / 460;
            const auto x0 = static_cast<int>(fx);
            const auto y0 = static_cast<int>(fy);
            double d[4];
            for (int k = 0; k < 4; ++k) {
                const int x = x0 + k % 2;
                const int y = y0 + k / 2;
                if (x < map.width && y < map.height) {
                    const float* pixel = map.pixel(x, y);
                    slots[k] = {pixel[0], pixel[1], pixel[2]};
                }
                d[k] =
                    static_cast<double>(mineralDelta(slots[k].p0, slots[k].p1, slots[k].p2, static_cast<float>(delta)));
            }
            const double top = static_cast<double>(static_cast<float>(d[1] - d[0])) * (fx - x0) + d[0];
            const double bottom = static_cast<double>(static_cast<float>(d[3] - d[2])) * (fx - x0) + d[2];
            out[static_cast<std::size_t>(460 * r + c)] = static_cast<float>((bottom - top) * (fy - y0) + top);
        }
    }
    return out;
}

}  // namespace talvek::test
