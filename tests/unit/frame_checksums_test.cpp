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
    run.addMap(patchyBitmap());
    randomGenerator() = RandomGenerator();
    ASSERT_EQ(run.start(), TALVEK_OK);
    if (GetParam().mode != TALVEK_MODE_QEMSCAN || GetParam().stone.isOnMap) {
        EXPECT_NE(run.frameText(1), run.frameText(3));
    }
    EXPECT_EQ(run.framesChecksum(), GetParam().checksum) << std::hex << "0x" << run.framesChecksum();
}

INSTANTIATE_TEST_SUITE_P(
    OfAllPairs, FrameChecksums,
    ::testing::Values(Frames{kPatch, 0, 0, 0xc62e27bf056b4b9e}, Frames{kPatch, 0, 1, 0xc27bf26e64f14476},
                      Frames{kPatch, 0, 2, 0x625743428eaf9e9c}, Frames{kPatch, 1, 1, 0x6aec372f9eee7c8f},
                      Frames{kPatch, 1, 2, 0xabfb172fde3d943b}, Frames{kPatch, 1, 3, 0x75ad04bdacb0e8ae},
                      Frames{kPatch, 2, 1, 0x5fb913c37b99b16d}, Frames{kPatch, 2, 2, 0x1b1a6fa55a022536},
                      Frames{kPatch, 2, 3, 0xf564bf256493438b}, Frames{kPatch, 3, 1, 0x632e38daa1cfecb2},
                      Frames{kPatch, 3, 2, 0x4ef0f733af853aad}, Frames{kPatch, 3, 3, 0x5381769dde0ebbea},
                      Frames{kSphere, 0, 0, 0xa1f6d062f88fa267}, Frames{kSphere, 0, 1, 0x79831f4d1e2d48a5},
                      Frames{kSphere, 0, 2, 0x51f280047a766150}, Frames{kSphere, 1, 1, 0xd17881d110777fa1},
                      Frames{kSphere, 1, 2, 0x59eb7d3a747122f2}, Frames{kSphere, 1, 3, 0xb50abdafc00de2a9},
                      Frames{kSphere, 2, 1, 0xaacfe6478bc0d822}, Frames{kSphere, 2, 2, 0xc479a599feb4189c},
                      Frames{kSphere, 2, 3, 0x88a1de8e92b11f0b}, Frames{kSphere, 3, 1, 0x751aa4334eacc58d},
                      Frames{kSphere, 3, 2, 0x6ed9c4ba6e83b584}, Frames{kSphere, 3, 3, 0x41382e42cf5cd620},
                      Frames{kSheets, 0, 0, 0x5b1dd86f50d0a816}, Frames{kSheets, 0, 1, 0x7f28673ce316eb21},
                      Frames{kSheets, 0, 2, 0x61d4bb7ff59078e2}, Frames{kSheets, 1, 1, 0x64ca1244239e0454},
                      Frames{kSheets, 1, 2, 0x867b3f4d2e89c45}, Frames{kSheets, 1, 3, 0x2792667161af07f4},
                      Frames{kSheets, 2, 1, 0x88f8af855b3112a3}, Frames{kSheets, 2, 2, 0x5c519f241f5d6038},
                      Frames{kSheets, 2, 3, 0x82a1c4d4c01c2265}, Frames{kSheets, 3, 1, 0x19c7200a92a87843},
                      Frames{kSheets, 3, 2, 0xf34ada3f8cf7ad46}, Frames{kSheets, 3, 3, 0xca1a68d06892041d},
                      Frames{kCube, 0, 0, 0x18496b924c9839c1}, Frames{kCube, 0, 1, 0x5ef0d93870e23fc},
                      Frames{kCube, 0, 2, 0xa87d589f20636ea4}, Frames{kCube, 1, 1, 0xffe0b18d22e7b29d},
                      Frames{kCube, 1, 2, 0x2c823ee0da5ae355}, Frames{kCube, 1, 3, 0x5fd3472efd9b354a},
                      Frames{kCube, 2, 1, 0x1c39bae17d46f829}, Frames{kCube, 2, 2, 0x1c39bae17d46f829},
                      Frames{kCube, 2, 3, 0x1c39bae17d46f829}, Frames{kCube, 3, 1, 0xffe0b18d22e7b29d},
                      Frames{kCube, 3, 2, 0x2c823ee0da5ae355}, Frames{kCube, 3, 3, 0x5fd3472efd9b354a}),
    [](const auto& instance) {
        return instance.param.stone.name + ("Mode" + std::to_string(instance.param.mode)) + "Model" +
               std::to_string(instance.param.model);
    });

}  // namespace
}  // namespace talvek::test
