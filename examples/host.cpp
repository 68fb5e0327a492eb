// The smallest host in C++: weathers a mesh for ten years of acid rain and measures how far the surface has moved.
#include <talvek.h>

#include <algorithm>
#include <cmath>
#include <iostream>
#include <vector>

namespace {

std::vector<float> frameVertices(std::uint32_t frame) {
    const auto count = 9 * static_cast<std::size_t>(talvekGetFrameNumTriangles(frame));
    std::vector<float> vertices(count);
    std::vector<float> normals(count);
    if (count > 0) {
        talvekGetFrameGeometry(frame, vertices.data(), normals.data());
    }
    return vertices;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2 || talvekSetFileName(argv[1]) != TALVEK_OK) {
        std::cerr << "usage: host MESH\n";
        return 2;
    }
    talvekSetTimeSpan(10, 365);
    talvekSetMode(TALVEK_MODE_MESH_DATA);
    talvekSetModel(TALVEK_MODEL_ACID_RAIN);
    talvekSetResults(1);
    talvekInit();
    const std::int32_t result = talvekStart();
    if (result == TALVEK_OK) {
        const std::vector<float> before = frameVertices(0);
        const std::vector<float> after = frameVertices(10);
        float largest = 0;
        for (std::size_t i = 0; i < std::min(before.size(), after.size()); ++i) {
            largest = std::max(largest, std::fabs(after[i] - before[i]));
        }
        std::cout << "moved by up to " << largest << " mm along an axis\n";
    }
    talvekFree();
    return result == TALVEK_OK ? 0 : 1;
}
