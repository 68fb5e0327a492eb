// Every pair of operating mode and model on one small stone: its frames are the same bytes on every platform, line ends
// apart. Each platform proves it on its own by comparing with the checksum written down here.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "support/meshes.h"
#include "support/runs.h"
#include "weathering/random.h"

namespace talvek::test {
namespace {

/// A wavy patch, calculated without any function whose last bit could differ.
std::unique_ptr<Object3D> wavyPatch() {
    auto mesh = makePlane(12);
    layTexture(*mesh, 1 / 64.0F, 1 / 80.0F);
    for (std::size_t i = 0; i < static_cast<std::size_t>(mesh->numVertices); ++i) {
        float* p = mesh->vertices.get() + 3 * i;
        const float x = p[0] - 6.3F;
        const float y = p[1] - 5.1F;
        p[2] = (x * x - 0.7F * y * y + 0.1F * x * x * y) / 12.0F + 3.0F / (1.0F + x * x + y * y);
    }
    return mesh;
}

Bitmap patchyMap() {
    constexpr Color kColors[] = {{255, 255, 255}, {128, 128, 128}, {0, 0, 255},
                                 {0, 192, 0},     {1, 2, 3},       {255, 128, 128}};
    return paintedBitmap(61, 47, [&kColors](int x, int y) { return kColors[(x * x + 3 * y + x * y / 7) % 6]; });
}

std::uint64_t checksum(const std::string& text) {
    std::uint64_t sum = 14695981039346656037U;
    for (const char c : text) {
        sum = (sum ^ static_cast<unsigned char>(c)) * 1099511628211U;
    }
    return sum;
}

struct Pair {
    std::int32_t mode;
    std::int32_t model;
    std::uint64_t checksum;
};

class FrameChecksums : public ::testing::TestWithParam<Pair> {};

TEST_P(FrameChecksums, AreTheSameEverywhere) {
    StoneRun run(*wavyPatch());
    run.mode = GetParam().mode;
    run.model = GetParam().model;
    run.epochs = 3;
    run.days = 1000;
    run.addMap(patchyMap());
    randomGenerator() = RandomGenerator();
    ASSERT_EQ(run.start(), TALVEK_OK);
    const std::string frames =
        run.summaryText('i') + run.frameText(1) + run.frameText(2) + run.frameText(3) + run.summaryText('w');
    EXPECT_NE(run.frameText(1), run.frameText(3));
    EXPECT_EQ(checksum(frames), GetParam().checksum) << std::hex << "0x" << checksum(frames);
}

INSTANTIATE_TEST_SUITE_P(
    OfAllPairs, FrameChecksums,
    ::testing::Values(Pair{0, 0, 0xd1235d4bff9d0ac0}, Pair{0, 1, 0x1a7c02a5ebd9bc28}, Pair{0, 2, 0x183715f88a116d7a},
                      Pair{1, 1, 0xc45d5a2f6860e06c}, Pair{1, 2, 0x6c0984df06c4765c}, Pair{1, 3, 0x5059849da9cc7c96},
                      Pair{2, 1, 0x71798172e8cf59f6}, Pair{2, 2, 0xc5cb3cd6ebc09483}, Pair{2, 3, 0x6a01fdaa5ae4e0de},
                      Pair{3, 1, 0xc434eac5caf5ca31}, Pair{3, 2, 0xe1b03e6f137e5ab8}, Pair{3, 3, 0xc20839e941be858b}),
    [](const auto& instance) {
        return "Mode" + std::to_string(instance.param.mode) + "Model" + std::to_string(instance.param.model);
    });

}  // namespace
}  // namespace talvek::test
