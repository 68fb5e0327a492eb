// Distances between surfaces against geometry, and against looking at every face.
#include "talvek/results/surface_distance.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "support/meshes.h"
#include "talvek/inspect/points.h"
#include "talvek/results/face_tree.h"

namespace talvek::test {
namespace {

using host::Point;

std::unique_ptr<Object3D> sphere(float radius, int cuts) {
    auto mesh = makeSphere(radius, cuts);
    mesh->updateNormals(true);
    return mesh;
}

/// The whole of a mesh in one leaf per face, so that no box is ever asked.
double nearestByHand(const Object3D& mesh, const Point& place) {
    double best = INFINITY;
    for (std::int32_t f = 0; f < mesh.numFaces; ++f) {
        auto single = makeMesh({}, {});
        std::vector<float> corners;
        for (std::size_t k = 0; k < 3; ++k) {
            const Point corner = host::pointOf(mesh, mesh.vertexIndex[static_cast<std::size_t>(3 * f) + k]);
            corners.insert(corners.end(),
                           {static_cast<float>(corner.x), static_cast<float>(corner.y), static_cast<float>(corner.z)});
        }
        single = makeMesh(corners, {0, 1, 2});
        best = std::min(best, host::FaceTree(*single).nearestTo(place).squaredDistance);
    }
    return best;
}

TEST(FaceTree, FindsTheNearestOfAllFaces) {
    const auto mesh = sphere(10, 3);
    const host::FaceTree tree(*mesh);
    for (int i = 0; i < 60; ++i) {
        const Point place = {15 * std::sin(i * 1.7), 13 * std::cos(i * 0.9), 14 * std::sin(i * 2.3 + 1)};
        const double expected = nearestByHand(*mesh, place);
        EXPECT_NEAR(tree.nearestTo(place).squaredDistance, expected, 1e-9 * (1 + expected)) << i;
        EXPECT_EQ(tree.nearestTo(place, i % mesh->numFaces).squaredDistance, tree.nearestTo(place).squaredDistance);
    }
}

/// A wedge's edge and tip are where the nearest face alone does not tell the side.
TEST(FaceTree, SidesOfEdgesAndCorners) {
    // A tetrahedron, its faces counter-clockwise as seen from outside.
    const auto mesh = makeMesh({0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 1}, {0, 2, 1, 0, 1, 3, 0, 3, 2, 1, 2, 3});
    const host::FaceTree tree(*mesh);
    EXPECT_NEAR(tree.nearestTo({-1, -1, -1}).signedDistance, std::sqrt(3.0), 1e-12);
    EXPECT_NEAR(tree.nearestTo({0.5, -1, -1}).signedDistance, std::sqrt(2.0), 1e-12);
    EXPECT_NEAR(tree.nearestTo({3, 0, 0}).signedDistance, 2, 1e-12);
    EXPECT_NEAR(tree.nearestTo({0.01, 0.02, 0.03}).signedDistance, -0.01, 1e-12);
    EXPECT_NEAR(tree.nearestTo({0.9, 0.9, -0.1}).signedDistance, std::sqrt(2 * 0.4 * 0.4 + 0.01), 1e-12);
}

TEST(SurfaceDistance, BetweenSpheres) {
    const auto inner = sphere(49, 5);
    const auto outer = sphere(50, 5);
    const host::SurfaceDistance distance = host::measureDistance(*inner, *outer, false);
    // The faces cut the sphere short, the inner one's vertices lie on it.
    EXPECT_NEAR(distance.signedStatistics.mean, -1, 0.05);
    EXPECT_NEAR(distance.rms, 1, 0.05);
    EXPECT_EQ(distance.volumeOutside, 0);
    EXPECT_NEAR(distance.enclosedDifference.value(), -4 * std::numbers::pi / 3 * (50.0 * 50 * 50 - 49.0 * 49 * 49),
                300);
    const host::SurfaceDistance back = host::measureDistance(*outer, *inner, false);
    EXPECT_NEAR(back.signedStatistics.mean, 1, 0.05);
}

TEST(SurfaceDistance, VerticesThatAreNotFiniteAreLeftOut) {
    const auto mesh = sphere(49, 2);
    mesh->vertices[4] = std::nanf("");
    const host::SurfaceDistance distance = host::measureDistance(*mesh, *sphere(50, 3), false);
    EXPECT_EQ(distance.signedStatistics.count, mesh->numVertices - 1);
    EXPECT_TRUE(std::isnan(distance.distances[1]));
}

/// A bumpy body that was turned by 0.05 radians and shifted lies where it lay before.
TEST(Alignment, FindsTheMotionBack) {
    const auto bumpy = [] {
        auto mesh = makeSphere(50, 5);
        for (std::int32_t v = 0; v < mesh->numVertices; ++v) {
            const Point p = host::pointOf(*mesh, v);
            const Point q = p * (1 + 0.1 * std::sin(p.x / 9) + 0.07 * std::sin(p.y / 7 + 1) + 0.05 * std::cos(p.z / 8));
            storeTriple(mesh->vertices.get(), v,
                        {static_cast<float>(q.x), static_cast<float>(q.y), static_cast<float>(q.z)});
        }
        mesh->updateNormals(true);
        return mesh;
    };
    const auto still = bumpy();
    const auto moved = bumpy();
    for (std::int32_t v = 0; v < moved->numVertices; ++v) {
        const Point p = host::pointOf(*moved, v);
        storeTriple(
            moved->vertices.get(), v,
            {static_cast<float>(std::cos(0.05) * p.x - std::sin(0.05) * p.y + 1.5),
             static_cast<float>(std::sin(0.05) * p.x + std::cos(0.05) * p.y - 0.7), static_cast<float>(p.z + 0.4)});
    }
    const host::SurfaceDistance distance = host::measureDistance(*moved, *still, true);
    ASSERT_TRUE(distance.alignment.has_value());
    EXPECT_TRUE(distance.alignment->hasSettled);
    EXPECT_GT(distance.alignment->rmsBefore, 0.3);
    EXPECT_LT(distance.alignment->rmsAfter, 1e-4);
    EXPECT_NEAR(distance.alignment->motion.angle(), 0.05 * 180 / std::numbers::pi, 1e-4);
    EXPECT_LT(distance.rms, 1e-4);
    EXPECT_NEAR(static_cast<double>(moved->vertices[0]), static_cast<double>(still->vertices[0]), 1e-3);
}

}  // namespace
}  // namespace talvek::test
