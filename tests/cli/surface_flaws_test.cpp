// What is told of a surface that has moved too far.
#include "talvek/results/surface_flaws.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "support/meshes.h"

namespace talvek::test {
namespace {

TEST(SurfaceFlaws, NoneOnASurfaceThatMovedAsAWhole) {
    const auto before = makeSphere(10, 3);
    const auto after = makeSphere(9, 3);
    const host::SurfaceFlaws flaws = host::findFlaws(*before, *after);
    EXPECT_EQ(flaws.turnedFaces.count, 0);
    EXPECT_EQ(flaws.grownEdges.count, 0);
    EXPECT_EQ(flaws.spikes.count, 0);
    EXPECT_TRUE(host::flawTexts(flaws, *after).empty());
}

TEST(SurfaceFlaws, AMirroredPlaneIsTurned) {
    const auto before = makePlane(4);
    const auto after = makePlane(4);
    for (std::int32_t v = 0; v < after->numVertices; ++v) {
        after->vertices[3 * static_cast<std::size_t>(v)] *= -1;
    }
    const host::SurfaceFlaws flaws = host::findFlaws(*before, *after);
    EXPECT_EQ(flaws.turnedFaces.count, 32);
    EXPECT_EQ(flaws.turnedFaces.first, 0);
    const std::vector<std::string> texts = host::flawTexts(flaws, *after);
    ASSERT_EQ(texts.size(), 1U);
    EXPECT_NE(texts[0].find("32 of 32 faces have turned by more than 90 degrees"), std::string::npos) << texts[0];
}

TEST(SurfaceFlaws, OneFaceThatFlipsIsFound) {
    const auto before = makeMesh({0, 0, 0, 1, 0, 0, 0, 1, 0}, {0, 1, 2});
    const auto after = makeMesh({0, 0, 0, 1, 0, 0, 0, -1, 0}, {0, 1, 2});
    const auto tilted = makeMesh({0, 0, 0, 1, 0, 0, 0, 0.01F, 5}, {0, 1, 2});
    EXPECT_EQ(host::findFlaws(*before, *after).turnedFaces.count, 1);
    EXPECT_EQ(host::findFlaws(*before, *tilted).turnedFaces.count, 0);
}

/// The six edges of a vertex of a plane, in the middle of a mesh of 4 x 4 cells.
TEST(SurfaceFlaws, ASpikeAndItsEdgesAreTold) {
    const auto before = makePlane(4);
    const auto after = makePlane(4);
    constexpr std::size_t kMiddle = 12;
    after->vertices[3 * kMiddle + 2] = 8;
    const host::SurfaceFlaws flaws = host::findFlaws(*before, *after);
    EXPECT_EQ(flaws.turnedFaces.count, 0);
    EXPECT_EQ(flaws.grownEdges.count, 6);
    EXPECT_EQ(flaws.grownEdges.low.z, 4);
    EXPECT_EQ(flaws.grownEdges.high.z, 4);
    EXPECT_EQ(flaws.spikes.count, 1);
    EXPECT_EQ(flaws.spikes.first, static_cast<std::int64_t>(kMiddle));
    const std::vector<std::string> texts = host::flawTexts(flaws, *after);
    ASSERT_EQ(texts.size(), 2U);
    EXPECT_NE(texts[0].find("6 edges grown more than fivefold, the first at "), std::string::npos) << texts[0];
    EXPECT_EQ(texts[1], "1 spike, vertices that have moved away from all their neighbours, at 2 2 8 mm");
}

TEST(SurfaceFlaws, WhatIsNotFiniteIsLeftOut) {
    const auto before = makePlane(4);
    const auto after = makePlane(4);
    after->vertices[0] = std::numeric_limits<float>::quiet_NaN();
    after->vertices[4] = std::numeric_limits<float>::infinity();
    const host::SurfaceFlaws flaws = host::findFlaws(*before, *after);
    EXPECT_EQ(flaws.turnedFaces.count + flaws.grownEdges.count + flaws.spikes.count, 0);
}

}  // namespace
}  // namespace talvek::test
