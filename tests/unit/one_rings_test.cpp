// The neighbours of each vertex, in the order in which the faces first name them.
#include "mesh/one_rings.h"

#include <gtest/gtest.h>

#include <vector>

#include "support/meshes.h"
#include "support/peak_memory.h"
#include "support/plain_curvature.h"
#include "support/random_numbers.h"

namespace talvek::test {
namespace {

using Ring = std::vector<std::int32_t>;

Ring ringOf(const OneRings& rings, std::int32_t vertex) {
    const std::span<const std::int32_t> ring = rings.ring(vertex);
    return {ring.begin(), ring.end()};
}

std::vector<float> origins(std::int32_t count) {
    return std::vector<float>(3 * static_cast<std::size_t>(count));
}

/// Faces 0-i-(i+1) for i from 1 to `rim`, closed.
std::unique_ptr<Object3D> makeFan(std::int32_t rim) {
    Ring faces;
    for (std::int32_t i = 1; i <= rim; ++i) {
        faces.insert(faces.end(), {0, i, i % rim + 1});
    }
    return makeMesh(origins(rim + 1), faces);
}

TEST(OneRings, KeepTheOrderOfFirstAppearance) {
    const auto mesh = makeMesh(origins(5), {0, 1, 2, 3, 0, 2, 0, 3, 4});
    const OneRings rings(*mesh);
    EXPECT_EQ(ringOf(rings, 0), (Ring{1, 2, 3, 4}));
    EXPECT_EQ(ringOf(rings, 1), (Ring{0, 2}));
    EXPECT_EQ(ringOf(rings, 2), (Ring{0, 1, 3}));
    EXPECT_EQ(ringOf(rings, 3), (Ring{0, 2, 4}));
    EXPECT_EQ(ringOf(rings, 4), (Ring{0, 3}));
}

TEST(OneRings, LeaveAVertexWithoutFacesAlone) {
    const OneRings rings(*makeMesh(origins(5), {0, 1, 3}));
    EXPECT_EQ(ringOf(rings, 2), Ring{});
    EXPECT_EQ(ringOf(rings, 3), (Ring{0, 1}));
    EXPECT_EQ(ringOf(rings, 4), Ring{});
}

TEST(OneRings, AreEmptyWithoutFaces) {
    const OneRings rings(*makeMesh(origins(2), {}));
    EXPECT_EQ(ringOf(rings, 0), Ring{});
    EXPECT_EQ(ringOf(rings, 1), Ring{});
}

TEST(OneRings, CountAVertexThatAFaceNamesTwiceAsItsOwnNeighbourTwice) {
    const OneRings rings(*makeMesh(origins(2), {0, 0, 1, 0, 0, 1}));
    EXPECT_EQ(ringOf(rings, 0), (Ring{0, 0, 1}));
    EXPECT_EQ(ringOf(rings, 1), (Ring{0}));
}

TEST(OneRings, TakeAFaceOfOneVertex) {
    const OneRings rings(*makeMesh(origins(1), {0, 0, 0}));
    EXPECT_EQ(ringOf(rings, 0), (Ring{0, 0}));
}

TEST(OneRings, HoldAHundredThousandNeighbours) {
    constexpr std::int32_t kRim = 100000;
    const auto fan = makeFan(kRim);
    const OneRings rings(*fan);
    const Ring hub = ringOf(rings, 0);
    ASSERT_EQ(hub.size(), static_cast<std::size_t>(kRim));
    for (std::int32_t i = 0; i < kRim; ++i) {
        ASSERT_EQ(hub[static_cast<std::size_t>(i)], i + 1);
    }
    EXPECT_EQ(ringOf(rings, 2), (Ring{0, 1, 3}));
}

// Six entries for each face while edges are collected, and 12 bytes for each vertex: 36 bytes for a face of a fan.
TEST(OneRings, NeedMemoryInProportionToTheFaces) {
    if (!kKnowsPeakMemory) {
        GTEST_SKIP() << "the memory of this process cannot be told";
    }
    constexpr std::int32_t kRim = 1000000;
    const auto fan = makeFan(kRim);
    const PeakMemory memory;
    const OneRings rings(*fan);
    EXPECT_LT(memory.growth(), 40 * std::int64_t{kRim});
}

TEST(OneRings, AgreeWithTheListsFoundBySearching) {
    RandomNumbers random;
    for (int round = 0; round < 200; ++round) {
        const auto numVertices = static_cast<std::int32_t>(1 + random.below(30));
        Ring faces(3 * random.below(60));
        for (std::int32_t& index : faces) {
            index = static_cast<std::int32_t>(random.below(static_cast<std::uint32_t>(numVertices)));
        }
        const auto mesh = makeMesh(origins(numVertices), faces);
        const OneRings rings(*mesh);
        const std::vector<Ring> expected = plainNeighbours(*mesh);
        for (std::int32_t vertex = 0; vertex < numVertices; ++vertex) {
            ASSERT_EQ(ringOf(rings, vertex), expected[static_cast<std::size_t>(vertex)]) << "round " << round;
        }
    }
}

}  // namespace
}  // namespace talvek::test
