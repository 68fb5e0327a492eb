// Every pair of operating mode and model on four small stones: the frames are the same bytes on every platform, line
// ends apart. Each platform proves it on its own by comparing with the checksums written down here.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "support/meshes.h"
#include "support/runs.h"
#include "weathering/random.h"

namespace talvek::test {
namespace {

// All of them are calculated without any function whose last bit could differ.

/// An open surface.
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

/// A closed surface. Its texture lies on it from above, so that the far side hides part of the near one, and reaches
/// beyond the map on two sides.
std::unique_ptr<Object3D> bumpySphere() {
    auto mesh = makeSphere(20, 3);
    layTexture(*mesh, 1 / 32.0F, 1 / 48.0F);
    for (std::size_t i = 0; i < static_cast<std::size_t>(mesh->numVertices); ++i) {
        float* p = mesh->vertices.get() + 3 * i;
        const float bump = p[0] * p[1] * p[2] / 8000.0F + p[0] * p[0] * p[2] / 64000.0F;
        for (int k = 0; k < 3; ++k) {
            p[k] *= 1.0F + 0.3F * bump;
        }
    }
    return mesh;
}

/// What scanners leave behind: three sheets at one edge, cones that share a tip, a face twice, once turned over, two
/// that name a vertex twice and have no area, a vertex without faces, and texels of their own, one of them not
/// there.
std::unique_ptr<Object3D> tangledSheets() {
    auto mesh = makeMesh({0, 0, 0, 0,  10, 0, 10, 1,  2,  -9, 2,  4, 1,  3,  11, 12, 14, 1,  20, 12, 3, 17, 19,
                          6, 5, 5, 25, 30, 4, 7,  31, 12, 9,  24, 6, 15, 21, 9,  19, -4, -4, -4, 2,  2, 2},
                         {0,  2,  1, 0,  1, 3,  0,  1, 4, 1,  2,  5,  2, 6,  5, 5,  6, 7, 5,  7, 8, 5, 8, 6, 6, 9,
                          10, 10, 9, 11, 6, 10, 11, 9, 6, 11, 12, 10, 9, 12, 9, 10, 0, 0, 14, 2, 2, 9, 1, 5, 1});
    mesh->numTexels = 7;
    mesh->texels = copyArray(
        std::vector<float>{0.02F, 0.03F, 0.4F, 0.05F, 0.1F, 0.45F, 0.6F, 0.5F, 0.3F, 0.9F, -0.2F, 0.7F, 1.3F, 0.2F}
            .data(),
        14);
    mesh->texelIndex = makeArray<std::int32_t>(3 * std::int64_t{mesh->numFaces});
    for (std::int32_t i = 0; i < 3 * mesh->numFaces; ++i) {
        mesh->texelIndex[static_cast<std::size_t>(i)] = i == 20 ? 7 : (i * i + i / 3) % 7;
    }
    return mesh;
}

/// Sharp edges, flat sides, and no texels: every mode takes it for homogeneous or for nothing.
std::unique_ptr<Object3D> bareCube() {
    return makeCube(16);
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

using MakeMesh = std::unique_ptr<Object3D> (*)();

struct Stone {
    const char* name;
    MakeMesh make;
    /// Whether its frames differ from one epoch to the next in every mode.
    bool isOnMap;
};

constexpr Stone kPatch = {"Patch", wavyPatch, true};
constexpr Stone kSphere = {"Sphere", bumpySphere, true};
constexpr Stone kSheets = {"Sheets", tangledSheets, true};
constexpr Stone kCube = {"Cube", bareCube, false};

struct Frames {
    Stone stone;
    std::int32_t mode;
    std::int32_t model;
    std::uint64_t checksum;
};

void PrintTo(const Frames& frames, std::ostream* out) {
    *out << frames.stone.name << ", mode " << frames.mode << ", model " << frames.model;
}

class FrameChecksums : public ::testing::TestWithParam<Frames> {};

TEST_P(FrameChecksums, AreTheSameEverywhere) {
    StoneRun run(*GetParam().stone.make());
    run.mode = GetParam().mode;
    run.model = GetParam().model;
    run.epochs = 3;
    run.days = 1000;
    run.addMap(patchyMap());
    randomGenerator() = RandomGenerator();
    ASSERT_EQ(run.start(), TALVEK_OK);
    const std::string frames =
        run.summaryText('i') + run.frameText(1) + run.frameText(2) + run.frameText(3) + run.summaryText('w');
    if (GetParam().mode != TALVEK_MODE_QEMSCAN || GetParam().stone.isOnMap) {
        EXPECT_NE(run.frameText(1), run.frameText(3));
    }
    EXPECT_EQ(checksum(frames), GetParam().checksum) << std::hex << "0x" << checksum(frames);
}

INSTANTIATE_TEST_SUITE_P(
    OfAllPairs, FrameChecksums,
    ::testing::Values(Frames{kPatch, 0, 0, 0xd1235d4bff9d0ac0}, Frames{kPatch, 0, 1, 0x1a7c02a5ebd9bc28},
                      Frames{kPatch, 0, 2, 0x183715f88a116d7a}, Frames{kPatch, 1, 1, 0xc45d5a2f6860e06c},
                      Frames{kPatch, 1, 2, 0x6c0984df06c4765c}, Frames{kPatch, 1, 3, 0x5059849da9cc7c96},
                      Frames{kPatch, 2, 1, 0x71798172e8cf59f6}, Frames{kPatch, 2, 2, 0xc5cb3cd6ebc09483},
                      Frames{kPatch, 2, 3, 0x6a01fdaa5ae4e0de}, Frames{kPatch, 3, 1, 0xc434eac5caf5ca31},
                      Frames{kPatch, 3, 2, 0xe1b03e6f137e5ab8}, Frames{kPatch, 3, 3, 0xc20839e941be858b},
                      Frames{kSphere, 0, 0, 0xfd5b66c5db17c84b}, Frames{kSphere, 0, 1, 0x607115e139da58a5},
                      Frames{kSphere, 0, 2, 0x2b3cd7d04534fee0}, Frames{kSphere, 1, 1, 0x200202dc66d6f2ec},
                      Frames{kSphere, 1, 2, 0xe8dea6b3c4bc3925}, Frames{kSphere, 1, 3, 0xe535bc581969e6f9},
                      Frames{kSphere, 2, 1, 0x7a667ea6930cd3b3}, Frames{kSphere, 2, 2, 0xdfcfd79aa045435e},
                      Frames{kSphere, 2, 3, 0x888057217ce45376}, Frames{kSphere, 3, 1, 0x2ca845463e30b2a1},
                      Frames{kSphere, 3, 2, 0x95c6ea422e4478c2}, Frames{kSphere, 3, 3, 0xff30499f3233c408},
                      Frames{kSheets, 0, 0, 0x6f47a0b79d22b06a}, Frames{kSheets, 0, 1, 0xa10ff7cc8ba4b15f},
                      Frames{kSheets, 0, 2, 0x2528139dafb2bed1}, Frames{kSheets, 1, 1, 0x3aede3644701ce9a},
                      Frames{kSheets, 1, 2, 0xd66618ecfed95806}, Frames{kSheets, 1, 3, 0xabfc6dd402f1e887},
                      Frames{kSheets, 2, 1, 0x52c155d38904541f}, Frames{kSheets, 2, 2, 0xd0dfd0c88df04cfe},
                      Frames{kSheets, 2, 3, 0x09774c05fe635435}, Frames{kSheets, 3, 1, 0x4a6477802aa934af},
                      Frames{kSheets, 3, 2, 0x7cf9aad2e2f72914}, Frames{kSheets, 3, 3, 0x596b7f759b5c8986},
                      Frames{kCube, 0, 0, 0x9d2984c2a861ad28}, Frames{kCube, 0, 1, 0xac531a4ca462590b},
                      Frames{kCube, 0, 2, 0xb0f8fab61ef49362}, Frames{kCube, 1, 1, 0xe02d019a1ade175f},
                      Frames{kCube, 1, 2, 0x72f61f5287a8e327}, Frames{kCube, 1, 3, 0x4d123cc0f0c94b2f},
                      Frames{kCube, 2, 1, 0x686bd4b9116442f8}, Frames{kCube, 2, 2, 0x686bd4b9116442f8},
                      Frames{kCube, 2, 3, 0x686bd4b9116442f8}, Frames{kCube, 3, 1, 0xe02d019a1ade175f},
                      Frames{kCube, 3, 2, 0x72f61f5287a8e327}, Frames{kCube, 3, 3, 0x4d123cc0f0c94b2f}),
    [](const auto& instance) {
        return instance.param.stone.name + ("Mode" + std::to_string(instance.param.mode)) + "Model" +
               std::to_string(instance.param.model);
    });

}  // namespace
}  // namespace talvek::test
