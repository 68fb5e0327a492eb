// Curvature at the vertices of a mesh: what is refused, what is set to zero, and every value to the last bit.
#include "mesh/shape_index.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <functional>
#include <limits>
#include <numbers>
#include <span>
#include <string>
#include <vector>

#include "mesh/one_rings.h"
#include "mesh/ring_order.h"
#include "mesh/vector3.h"
#include "support/meshes.h"
#include "support/plain_curvature.h"
#include "support/random_numbers.h"

namespace talvek::test {
namespace {

std::string thrownBy(const std::function<void()>& action) {
    try {
        action();
    } catch (const char* message) {
        return message;
    }
    return "nothing";
}

std::unique_ptr<Object3D> withNormals(std::unique_ptr<Object3D> mesh) {
    mesh->updateNormals(true);
    return mesh;
}

std::vector<std::int32_t> orderedRing(const Object3D& mesh, std::int32_t vertex) {
    OneRings rings(mesh);
    const std::span<std::int32_t> ring = rings.ring(vertex);
    RingOrder(mesh).sort(vertex, ring);
    return {ring.begin(), ring.end()};
}

/// A fan of `rim` faces around vertex 0 in (0, 0, height); its rim rises by `wave` at two places and falls at two.
std::unique_ptr<Object3D> makeFan(std::int32_t rim, double height, double wave) {
    std::vector<float> vertices = {0, 0, static_cast<float>(height)};
    std::vector<std::int32_t> faces;
    for (std::int32_t i = 0; i < rim; ++i) {
        const double angle = 2 * std::numbers::pi * i / rim;
        vertices.insert(vertices.end(), {static_cast<float>(std::cos(angle)), static_cast<float>(std::sin(angle)),
                                         static_cast<float>(wave * std::cos(2 * angle))});
        faces.insert(faces.end(), {0, i + 1, (i + 1) % rim + 1});
    }
    return withNormals(makeMesh(vertices, faces));
}

/// A low pyramid of four sides: neighbours are seen in their true order, and the tip is curved enough to count.
std::unique_ptr<Object3D> makePyramid(double height = 0.3) {
    return makeFan(4, height, 0);
}

void expectSameBits(const HeapArray<float>& actual, const std::vector<float>& expected, const std::string& what) {
    for (std::size_t i = 0; i < expected.size(); ++i) {
        if (std::isnan(expected[i])) {
            ASSERT_TRUE(std::isnan(actual[i])) << what << " of vertex " << i;
        } else {
            ASSERT_EQ(std::bit_cast<std::uint32_t>(actual[i]), std::bit_cast<std::uint32_t>(expected[i]))
                << what << " of vertex " << i;
        }
    }
}

void expectPlainCurvature(Object3D& mesh, const std::string& where) {
    ShapeIndex shapeIndex(&mesh);
    shapeIndex.compute();
    const PlainCurvature expected = plainCurvature(mesh);
    expectSameBits(mesh.shapeIndex, expected.shapeIndex, where + ": shape index");
    expectSameBits(mesh.minimumCurvature, expected.minimum, where + ": minimum");
    expectSameBits(mesh.maximumCurvature, expected.maximum, where + ": maximum");
    expectSameBits(mesh.meanCurvature, expected.mean, where + ": mean");
    expectSameBits(mesh.gaussianCurvature, expected.gaussian, where + ": Gaussian");
    mesh.meanCurvature.reset();
    mesh.gaussianCurvature.reset();
    shapeIndex.computeMeanAndGaussian();
    expectSameBits(mesh.meanCurvature, expected.mean, where + ": mean alone");
    expectSameBits(mesh.gaussianCurvature, expected.gaussian, where + ": Gaussian alone");
}

void expectNoCurvature(const Object3D& mesh, std::size_t vertex) {
    EXPECT_EQ(mesh.shapeIndex[vertex], 0.5F) << vertex;
    EXPECT_EQ(mesh.minimumCurvature[vertex], 0) << vertex;
    EXPECT_EQ(mesh.maximumCurvature[vertex], 0) << vertex;
    EXPECT_EQ(mesh.meanCurvature[vertex], 0) << vertex;
    EXPECT_EQ(mesh.gaussianCurvature[vertex], 0) << vertex;
}

TEST(ShapeIndexRefuses, ANullMesh) {
    EXPECT_EQ(thrownBy([] { const ShapeIndex shapeIndex(nullptr); }),
              "ShapeIndex::ShapeIndex: null Pointer: expecting Object3D");
}

TEST(ShapeIndexRefuses, AMeshWithoutFaces) {
    const auto mesh = makeMesh({0, 0, 0, 1, 0, 0}, {});
    EXPECT_EQ(thrownBy([&] { const ShapeIndex shapeIndex(mesh.get()); }),
              "ShapeIndex::ShapeIndex: object must have > 0 triangles");
}

TEST(ShapeIndexRefuses, AMeshThatLacksAnArray) {
    const std::string message =
        "ShapeIndex::ShapeIndex: for shape index you need to have VERTEX NORMAL array, COORDINATE array, and FACE "
        "INDEX array\n";
    const auto withoutNormals = makeCube(1);
    EXPECT_EQ(thrownBy([&] { const ShapeIndex shapeIndex(withoutNormals.get()); }), message);
    const auto withoutPositions = withNormals(makeCube(1));
    withoutPositions->vertices.reset();
    EXPECT_EQ(thrownBy([&] { const ShapeIndex shapeIndex(withoutPositions.get()); }), message);
    const auto withoutIndex = withNormals(makeCube(1));
    withoutIndex->vertexIndex.reset();
    EXPECT_EQ(thrownBy([&] { const ShapeIndex shapeIndex(withoutIndex.get()); }), message);
}

TEST(ShapeIndex, ListsShortRingsOtherwiseThanTheMeshDoes) {
    // Vertices of a lone triangle have two neighbours, the last vertex has none.
    const auto mesh = withNormals(makeMesh({0, 0, 0, 1, 0, 0, 0, 1, 0, 5, 5, 5}, {0, 1, 2}));
    ShapeIndex shapeIndex(mesh.get());
    shapeIndex.compute();
    EXPECT_EQ(shapeIndex.shapeIndexList(), std::vector<float>(4, 1.0F));
    for (std::size_t vertex = 0; vertex < 4; ++vertex) {
        expectNoCurvature(*mesh, vertex);
    }
}

TEST(ShapeIndex, TakesOneNeighbourForAShortRing) {
    // A face that names vertex 1 twice: it is the only neighbour of vertex 0, and its own.
    const auto mesh = withNormals(makeMesh({0, 0, 0, 1, 0, 0}, {0, 1, 1}));
    ShapeIndex shapeIndex(mesh.get());
    shapeIndex.compute();
    ASSERT_EQ(OneRings(*mesh).ring(0).size(), 1U);
    EXPECT_EQ(shapeIndex.shapeIndexList()[0], 1.0F);
    expectNoCurvature(*mesh, 0);
}

TEST(ShapeIndex, ListsTheValuesOfEveryComputation) {
    const auto mesh = withNormals(makeSphere(1, 1));
    ShapeIndex shapeIndex(mesh.get());
    shapeIndex.compute();
    shapeIndex.compute();
    const auto count = static_cast<std::size_t>(mesh->numVertices);
    ASSERT_EQ(shapeIndex.shapeIndexList().size(), 2 * count);
    for (std::size_t i = 0; i < 2 * count; ++i) {
        EXPECT_EQ(shapeIndex.shapeIndexList()[i], mesh->shapeIndex[i % count]);
    }
}

TEST(ShapeIndex, ForgetsTheValuesWhenAskedTo) {
    const auto mesh = withNormals(makeSphere(1, 1));
    ShapeIndex shapeIndex(mesh.get(), ShapeIndex::History::kForgotten);
    shapeIndex.compute();
    shapeIndex.compute();
    EXPECT_TRUE(shapeIndex.shapeIndexList().empty());
    EXPECT_NE(mesh->shapeIndex, nullptr);
}

TEST(ShapeIndex, FollowsTheSurface) {
    const auto mesh = makePyramid(0.3);
    ShapeIndex shapeIndex(mesh.get());
    shapeIndex.compute();
    const float tall = mesh->gaussianCurvature[0];
    mesh->vertices[2] = 0.1F;
    mesh->updateNormals(true);
    shapeIndex.compute();
    const float low = mesh->gaussianCurvature[0];
    EXPECT_GT(low, 0);
    EXPECT_GT(tall, low);
}

TEST(ShapeIndex, IsHalfOnAFlatGrid) {
    const auto mesh = withNormals(makePlane(8));
    ShapeIndex shapeIndex(mesh.get());
    shapeIndex.compute();
    for (std::size_t y = 1; y < 8; ++y) {
        for (std::size_t x = 1; x < 8; ++x) {
            expectNoCurvature(*mesh, 9 * y + x);
        }
    }
}

TEST(ShapeIndex, IsHalfWhereTheSquareOfTheMeanIsBelowTheGaussian) {
    const auto mesh = makeFan(6, 0.3, 0);
    const PlainCurvature estimate = plainCurvature(*mesh);
    ASSERT_GT(estimate.unzeroedMean[0], 0.5);
    ASSERT_GT(estimate.unzeroedGaussian[0], estimate.unzeroedMean[0] * estimate.unzeroedMean[0]);
    ShapeIndex shapeIndex(mesh.get());
    shapeIndex.compute();
    expectNoCurvature(*mesh, 0);
}

/// A pyramid whose tip has a normal for which the square of the mean curvature is the Gaussian one to the last bit.
std::unique_ptr<Object3D> makeUmbilicTip(float side) {
    auto mesh =
        makeMesh({0, 0, 0x1.e8p-3F, 1, 0, 0, 0, 1, 0, -1, 0, 0, 0, -1, 0}, {0, 1, 2, 0, 2, 3, 0, 3, 4, 0, 4, 1});
    mesh->vertexNormals = makeZeroedArray<float>(15);
    for (std::size_t i = 0; i < 5; ++i) {
        mesh->vertexNormals[3 * i + 2] = side;
    }
    mesh->vertexNormals[0] = 0x1.2e2e72p-1F * side;
    mesh->vertexNormals[1] = 0x1.30839p-12F * side;
    return mesh;
}

TEST(ShapeIndex, IsZeroOrOneWhereAllDirectionsCurveAlike) {
    for (const float side : {1.0F, -1.0F}) {
        const auto tip = makeUmbilicTip(side);
        const PlainCurvature estimate = plainCurvature(*tip);
        ASSERT_EQ(estimate.unzeroedMean[0] * estimate.unzeroedMean[0], estimate.unzeroedGaussian[0]);
        ShapeIndex(tip.get()).compute();
        EXPECT_NEAR(static_cast<double>(tip->shapeIndex[0]), side > 0 ? 0 : 1, 2e-8);
        EXPECT_GT(tip->meanCurvature[0] * side, 0.5F);
        EXPECT_EQ(tip->minimumCurvature[0], tip->meanCurvature[0]);
        EXPECT_EQ(tip->maximumCurvature[0], tip->meanCurvature[0]);
        EXPECT_GT(tip->gaussianCurvature[0], 0.3F);
    }
}

TEST(ShapeIndex, TellsBumpsFromHollows) {
    const auto bump = makePyramid();
    ShapeIndex(bump.get()).compute();
    ASSERT_GT(bump->meanCurvature[0], 0);
    EXPECT_LT(bump->shapeIndex[0], 0.5F);
    const auto hollow = makePyramid(-0.3);
    ShapeIndex(hollow.get()).compute();
    ASSERT_LT(hollow->meanCurvature[0], 0);
    EXPECT_GT(hollow->shapeIndex[0], 0.5F);
    EXPECT_EQ(hollow->meanCurvature[0], -bump->meanCurvature[0]);
    EXPECT_EQ(hollow->gaussianCurvature[0], bump->gaussianCurvature[0]);
}

TEST(ShapeIndex, LeavesAnUndefinedMeanCurvatureUndefined) {
    const auto mesh = makePyramid();
    mesh->vertexNormals[0] = mesh->vertexNormals[1] = mesh->vertexNormals[2] = 0;
    ShapeIndex(mesh.get()).compute();
    EXPECT_TRUE(std::isnan(mesh->meanCurvature[0]));
    EXPECT_TRUE(std::isnan(mesh->shapeIndex[0]));
    EXPECT_FALSE(std::isnan(mesh->gaussianCurvature[0]));
}

TEST(ShapeIndex, TakesAnUndefinedGaussianCurvatureForNone) {
    const auto mesh = makePyramid();
    mesh->vertices[3] = mesh->vertices[0];
    mesh->vertices[4] = mesh->vertices[1];
    mesh->vertices[5] = mesh->vertices[2];
    ShapeIndex(mesh.get()).compute();
    expectNoCurvature(*mesh, 0);
}

TEST(ShapeIndex, SurvivesPositionsThatAreNotFinite) {
    const auto mesh = makeFan(7, 1, 0);
    mesh->vertices[0] = std::numeric_limits<float>::infinity();
    mesh->vertices[10] = std::numeric_limits<float>::quiet_NaN();
    mesh->updateNormals(true);
    expectPlainCurvature(*mesh, "not finite");
}

/// The Gaussian curvature at the hub of a fan, its faces taken in the order in which they were made.
double curvatureOfHub(const Object3D& fan) {
    const auto corner = [&fan](std::int32_t i) {
        const float* p = fan.vertices.get() + 3 * static_cast<std::ptrdiff_t>(i);
        return Vector3<double>{static_cast<double>(p[0]), static_cast<double>(p[1]), static_cast<double>(p[2])};
    };
    double angles = 0;
    double area = 0;
    for (std::size_t i = 0; i < fan.faceSpan().size(); i += 3) {
        const Vector3<double> a = corner(fan.faceSpan()[i + 1]) - corner(0);
        const Vector3<double> b = corner(fan.faceSpan()[i + 2]) - corner(0);
        angles += std::atan2(length(cross(a, b)), dot(a, b));
        area += length(cross(a, b)) / 2;
    }
    return (2 * std::numbers::pi - angles) / (area / 3);
}

TEST(ShapeIndex, GoesRoundLargeRings) {
    for (const std::int32_t rim : {128, 100000}) {
        const auto saddle = makeFan(rim, 0, 0.3);
        ShapeIndex shapeIndex(saddle.get());
        shapeIndex.compute();
        ASSERT_EQ(OneRings(*saddle).ring(0).size(), static_cast<std::size_t>(rim));
        const double expected = curvatureOfHub(*saddle);
        ASSERT_LT(expected, -0.1);
        EXPECT_NEAR(static_cast<double>(saddle->gaussianCurvature[0]), expected, 1e-5) << rim;
        EXPECT_LT(saddle->minimumCurvature[0], 0) << rim;
        EXPECT_GT(saddle->maximumCurvature[0], 0) << rim;
    }
}

TEST(ShapeIndex, AgreesWithThePlainFormOnMeshesOfManyShapes) {
    expectPlainCurvature(*withNormals(makeSphere(10, 3)), "sphere");
    expectPlainCurvature(*withNormals(makePlane(12)), "plane");
    expectPlainCurvature(*withNormals(makeCube(3)), "cube");
    expectPlainCurvature(*makeFan(300, 0, 0.3), "saddle");
    expectPlainCurvature(*makeFan(300, 2, 0), "cone");
    expectPlainCurvature(*makeFan(511, 2, 0.1), "cone of 511 sides");
    expectPlainCurvature(*makeFan(1301, 2, 0.1), "cone of 1301 sides");
}

TEST(ShapeIndex, AgreesWithThePlainFormOnTangles) {
    RandomNumbers random;
    for (int round = 0; round < 200; ++round) {
        std::vector<float> vertices(3 * (3 + random.below(20)));
        for (float& coordinate : vertices) {
            // Coarse values make positions coincide and normals cancel.
            coordinate = round % 2 == 0 ? random.coordinate(100) : static_cast<float>(random.below(3));
        }
        std::vector<std::int32_t> faces(3 * (1 + random.below(60)));
        for (std::int32_t& index : faces) {
            index = static_cast<std::int32_t>(random.below(static_cast<std::uint32_t>(vertices.size() / 3)));
        }
        const auto mesh = withNormals(makeMesh(vertices, faces));
        expectPlainCurvature(*mesh, "round " + std::to_string(round));
    }
}

TEST(RingOrder, GoesRoundTheVertexFromItsFirstNeighbour) {
    // The faces name the neighbours of vertex 0 in the order 1, 3, 2, 4; around it they stand as 1, 2, 3, 4.
    const auto mesh = withNormals(
        makeMesh({0, 0, 0, 1, 0, 0, 0, 1, 0, -1, 0, 0, 0, -1, 0}, {1, 0, 3, 0, 2, 3, 0, 1, 2, 0, 3, 4, 0, 4, 1}));
    for (std::size_t i = 0; i < 5; ++i) {
        mesh->vertexNormals[3 * i] = 0;
        mesh->vertexNormals[3 * i + 1] = 0;
        mesh->vertexNormals[3 * i + 2] = 1;
    }
    const std::vector<std::int32_t> ring = orderedRing(*mesh, 0);
    // Degrees are counted against the normal's own sense of turning.
    EXPECT_EQ(ring, (std::vector<std::int32_t>{1, 4, 3, 2}));
}

TEST(RingOrder, PutsNeighboursInTheDirectionOfTheFirstBehindIt) {
    const auto mesh = withNormals(makeMesh({0, 0, 0, 1, 0, 0, 0, 1, 0, 2, 0, 0}, {0, 1, 2, 0, 2, 3}));
    const std::vector<std::int32_t> ring = orderedRing(*mesh, 0);
    EXPECT_EQ(ring, (std::vector<std::int32_t>{1, 3, 2}));
}

TEST(RingOrder, KeepsTheOrderOfAppearanceWhereAnglesAreEqualOrUndefined) {
    // All further neighbours of vertex 0 lie in one direction.
    const auto flat = withNormals(makeMesh({0, 0, 0, 1, 0, 0, 0, 3, 0, 0, 1, 0, 0, 2, 0}, {0, 1, 2, 0, 1, 3, 0, 1, 4}));
    const std::vector<std::int32_t> ring = orderedRing(*flat, 0);
    EXPECT_EQ(ring, (std::vector<std::int32_t>{1, 2, 3, 4}));
    // Without a normal at the first neighbour there are no angles.
    flat->vertexNormals[3] = flat->vertexNormals[4] = flat->vertexNormals[5] = 0;
    const std::vector<std::int32_t> unsorted = orderedRing(*flat, 0);
    EXPECT_EQ(unsorted, (std::vector<std::int32_t>{1, 2, 3, 4}));
}

}  // namespace
}  // namespace talvek::test
