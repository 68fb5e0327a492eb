// How far a surface has moved and how large it is, on shapes whose figures are known.
#include "talvek/results/displacement.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>
#include <numeric>
#include <tuple>

#include "support/meshes.h"
#include "talvek/inspect/mesh_edges.h"

namespace talvek::test {
namespace {

constexpr double kNone = std::numeric_limits<double>::quiet_NaN();

std::unique_ptr<Object3D> movedSphere(float radius, float by) {
    auto sphere = makeSphere(radius, 4);
    sphere->updateNormals(true);
    for (std::size_t i = 0; i < sphere->vertexSpan().size(); ++i) {
        sphere->vertices[i] += by * sphere->vertexNormals[i];
    }
    return sphere;
}

TEST(Displacement, IsSignedAlongTheFirstNormal) {
    const auto before = movedSphere(100, 0);
    const auto shrunk = movedSphere(100, -0.5F);
    const auto grown = movedSphere(100, 0.25F);
    for (const double value : host::normalDisplacements(*before, *shrunk)) {
        EXPECT_NEAR(value, -0.5, 2e-5);
    }
    for (const double value : host::normalDisplacements(*before, *grown)) {
        EXPECT_NEAR(value, 0.25, 2e-5);
    }
    for (const double value : host::distances(*before, *shrunk)) {
        EXPECT_NEAR(value, 0.5, 2e-5);
    }
}

TEST(Displacement, AcrossTheNormalIsDistanceAlone) {
    const auto before = makePlane(4);
    const auto after = makePlane(4);
    before->updateNormals(true);
    for (std::int32_t v = 0; v < after->numVertices; ++v) {
        after->vertices[3 * static_cast<std::size_t>(v)] += 3;
    }
    EXPECT_EQ(host::normalDisplacements(*before, *after), std::vector<double>(25, 0.0));
    EXPECT_EQ(host::distances(*before, *after), std::vector<double>(25, 3.0));
}

TEST(Displacement, AreasOfTheVerticesAddUpToThatOfTheSurface) {
    const auto plane = makePlane(4);
    const std::vector<double> areas = host::vertexAreas(*plane);
    EXPECT_DOUBLE_EQ(std::accumulate(areas.begin(), areas.end(), 0.0), 16);
    EXPECT_DOUBLE_EQ(host::surfaceArea(*plane), 16);
    // Inside the plane six triangles of half a square millimetre meet.
    EXPECT_DOUBLE_EQ(areas[12], 1);
}

TEST(Displacement, StatisticsAreThoseOfTheFiniteValues) {
    const std::vector<double> values = {4, kNone, 1, 3, 2, std::numeric_limits<double>::infinity(), 5};
    const std::vector<double> areas = {1, 100, 0, 0, 1, 100, 2};
    const host::ValueStatistics found = host::statisticsOf(values, areas);
    EXPECT_EQ(found.count, 5);
    EXPECT_DOUBLE_EQ(found.mean, 3);
    EXPECT_DOUBLE_EQ(found.areaWeightedMean, 4);
    EXPECT_DOUBLE_EQ(found.smallest, 1);
    EXPECT_DOUBLE_EQ(found.largest, 5);
    const std::array<double, 7> percentiles = {1.04, 1.2, 2, 3, 4, 4.8, 4.96};
    for (std::size_t i = 0; i < percentiles.size(); ++i) {
        EXPECT_DOUBLE_EQ(found.percentiles[i], percentiles[i]) << host::kPercentiles[i];
    }
}

TEST(Displacement, StatisticsOfNothingAndOfOneValue) {
    const std::vector<double> nothing = {kNone};
    const std::vector<double> one = {-7};
    const std::vector<double> area = {0};
    EXPECT_EQ(host::statisticsOf(nothing, area).count, 0);
    const host::ValueStatistics found = host::statisticsOf(one, area);
    EXPECT_EQ(std::tuple(found.mean, found.areaWeightedMean, found.smallest, found.largest),
              std::tuple(-7.0, -7.0, -7.0, -7.0));
    EXPECT_EQ(found.percentiles.front(), -7);
    EXPECT_EQ(found.percentiles.back(), -7);
}

TEST(Displacement, VolumeOfAClosedSurface) {
    auto sphere = makeSphere(10, 6);
    const double volume = 4.0 / 3.0 * std::numbers::pi * 1000;
    ASSERT_TRUE(host::enclosedVolume(*sphere));
    EXPECT_NEAR(*host::enclosedVolume(*sphere), volume, volume / 1000);
    EXPECT_NEAR(host::surfaceArea(*sphere), 400 * std::numbers::pi, 1);
    const double atOrigin = *host::enclosedVolume(*sphere);
    for (float& coordinate : sphere->vertexSpan()) {
        coordinate += 4096;
    }
    EXPECT_NEAR(*host::enclosedVolume(*sphere), atOrigin, 0.1);
    for (std::int32_t face = 0; face < sphere->numFaces; ++face) {
        std::swap(sphere->vertexIndex[3 * static_cast<std::size_t>(face)],
                  sphere->vertexIndex[3 * static_cast<std::size_t>(face) + 1]);
    }
    EXPECT_NEAR(*host::enclosedVolume(*sphere), -atOrigin, 0.1);
}

TEST(Displacement, OpenTurnedOrTornSurfacesHaveNoVolume) {
    EXPECT_FALSE(host::enclosedVolume(*makePlane(4)));
    auto turned = makeSphere(10, 2);
    std::swap(turned->vertexIndex[0], turned->vertexIndex[1]);
    EXPECT_FALSE(host::enclosedVolume(*turned));
    auto torn = makeSphere(10, 2);
    torn->vertices[5] = std::numeric_limits<float>::infinity();
    EXPECT_FALSE(host::enclosedVolume(*torn));
    EXPECT_FALSE(host::enclosedVolume(Object3D()));
}

TEST(MeshEdges, EachIsVisitedOnceInOrderOfItsEnds) {
    const auto sphere = makeSphere(1, 2);
    std::pair<std::int32_t, std::int32_t> previous = {-1, -1};
    std::int64_t count = 0;
    host::MeshEdges(*sphere).forEach([&](const host::Edge& edge) {
        const std::pair ends(edge.low, edge.high);
        EXPECT_LT(previous, ends);
        EXPECT_LT(edge.low, edge.high);
        EXPECT_TRUE(edge.isRegular());
        previous = ends;
        ++count;
    });
    // Euler: V - E + F = 2.
    EXPECT_EQ(count, sphere->numVertices + sphere->numFaces - 2);
}

}  // namespace
}  // namespace talvek::test
