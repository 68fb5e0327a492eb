// Curvature of surfaces on which it is known. Positions are single-precision numbers, so refinement helps only as long
// as their rounding stays small against the bend of a single face.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <iostream>
#include <numbers>
#include <vector>

#include "mesh/shape_index.h"
#include "support/meshes.h"
#include "support/plain_curvature.h"

namespace talvek::test {
namespace {

constexpr double kPi = std::numbers::pi;

/// A grid of `columns` x `rows` vertices, closed in both directions where asked for; `place` appends a vertex.
template <typename Place>
std::unique_ptr<Object3D> makeGrid(int columns, int rows, bool closeRows, Place place) {
    std::vector<float> vertices;
    std::vector<std::int32_t> faces;
    for (int i = 0; i < columns; ++i) {
        for (int j = 0; j < rows; ++j) {
            place(i, j, [&vertices](double x, double y, double z) {
                vertices.insert(vertices.end(), {static_cast<float>(x), static_cast<float>(y), static_cast<float>(z)});
            });
        }
        for (int j = 0; j < (closeRows ? rows : rows - 1); ++j) {
            const int right = (i + 1) % columns;
            const int above = (j + 1) % rows;
            faces.insert(faces.end(), {i * rows + j, right * rows + j, right * rows + above});
            faces.insert(faces.end(), {i * rows + j, right * rows + above, i * rows + above});
        }
    }
    auto mesh = makeMesh(vertices, faces);
    mesh->updateNormals(true);
    return mesh;
}

/// Root mean square of errors.
class Error {
  public:
    void add(double value, double truth) {
        const double error = value - truth;
        sum_ += error * error;
        ++count_;
    }
    double value() const { return std::sqrt(sum_ / count_); }

  private:
    double sum_ = 0;
    int count_ = 0;
};

struct Errors {
    Error mean;
    Error gaussian;
};

double rate(const Error& coarse, const Error& fine) {
    return std::log2(coarse.value() / fine.value());
}

/// Each halving of the edges brings the errors down to about a quarter: rates from 1.71 to 2.03 were measured.
void expectSecondOrder(const Errors& coarse, const Errors& middle, const Errors& fine) {
    EXPECT_NEAR(rate(coarse.mean, middle.mean), 2, 0.35);
    EXPECT_NEAR(rate(middle.mean, fine.mean), 2, 0.35);
    EXPECT_NEAR(rate(coarse.gaussian, middle.gaussian), 2, 0.35);
    EXPECT_NEAR(rate(middle.gaussian, fine.gaussian), 2, 0.35);
    std::cout << "mean curvature: error " << fine.mean.value() << ", rates " << rate(coarse.mean, middle.mean)
              << " and " << rate(middle.mean, fine.mean) << "; Gaussian curvature: error " << fine.gaussian.value()
              << ", rates " << rate(coarse.gaussian, middle.gaussian) << " and " << rate(middle.gaussian, fine.gaussian)
              << "\n";
}

/// The library's curvature is the estimate or, where that cannot be of a surface, zero.
void expectEstimateOrZero(Object3D& mesh, const PlainCurvature& estimate) {
    ShapeIndex(&mesh).compute();
    for (std::size_t i = 0; i < static_cast<std::size_t>(mesh.numVertices); ++i) {
        const bool isSetToZero = estimate.unzeroedMean[i] * estimate.unzeroedMean[i] < estimate.unzeroedGaussian[i];
        ASSERT_EQ(mesh.meanCurvature[i], isSetToZero ? 0 : static_cast<float>(estimate.unzeroedMean[i]));
        ASSERT_EQ(mesh.gaussianCurvature[i], isSetToZero ? 0 : static_cast<float>(estimate.unzeroedGaussian[i]));
    }
}

/// Between the 25th parallels of a sphere of radius 10 that has `rows` rows of vertices between the 50th.
Errors sphereErrors(int rows) {
    const int columns = 2 * rows;
    const auto mesh = makeGrid(columns, rows, false, [&](int i, int j, auto add) {
        const double longitude = 2 * kPi * i / columns;
        const double latitude = (2.0 * j / (rows - 1) - 1) * kPi * 50 / 180;
        add(10 * std::cos(latitude) * std::cos(longitude), 10 * std::cos(latitude) * std::sin(longitude),
            10 * std::sin(latitude));
    });
    const PlainCurvature curvature = plainCurvature(*mesh);
    expectEstimateOrZero(*mesh, curvature);
    Errors errors;
    for (int i = 0; i < columns; ++i) {
        for (int j = (rows - 1) / 4; j <= (rows - 1) * 3 / 4; ++j) {
            const auto vertex = static_cast<std::size_t>(i * rows + j);
            errors.mean.add(curvature.unzeroedMean[vertex], 0.1);
            errors.gaussian.add(curvature.unzeroedGaussian[vertex], 0.01);
        }
    }
    return errors;
}

// On a sphere H^2 = K, and the estimates fall short of it on one side or the other: most vertices are set to zero. So
// the convergence shows in the estimates before that, and the library's values are these wherever they are not zero.
TEST(CurvatureTruth, OfASphereIsApproachedWithTheSquareOfTheEdgeLength) {
    expectSecondOrder(sphereErrors(9), sphereErrors(17), sphereErrors(33));
}

TEST(CurvatureTruth, OfAnIcosphereIsZeroOrNearIt) {
    const auto mesh = makeSphere(10, 4);
    mesh->updateNormals(true);
    const PlainCurvature estimate = plainCurvature(*mesh);
    expectEstimateOrZero(*mesh, estimate);
    int counted = 0;
    for (std::size_t i = 0; i < static_cast<std::size_t>(mesh->numVertices); ++i) {
        // The twelve corners of the icosahedron have five neighbours, for which the estimate is off by a seventh.
        EXPECT_NEAR(estimate.unzeroedMean[i], 0.1, 0.016);
        EXPECT_NEAR(estimate.unzeroedGaussian[i], 0.01, 0.0016);
        counted += mesh->meanCurvature[i] != 0 ? 1 : 0;
    }
    EXPECT_GE(counted, 12);
}

constexpr double kRing = 10;
constexpr double kTube = 4;

/// A torus, whose curvatures are far enough apart for every vertex to keep them.
Errors torusErrors(int columns, int rows) {
    const auto mesh = makeGrid(columns, rows, true, [&](int i, int j, auto add) {
        const double around = 2 * kPi * i / columns;
        const double tube = 2 * kPi * (j + 0.5) / rows;
        const double r = kRing + kTube * std::cos(tube);
        add(r * std::cos(around), r * std::sin(around), kTube * std::sin(tube));
    });
    ShapeIndex(mesh.get()).compute();
    Errors errors;
    for (int i = 0; i < columns; ++i) {
        for (int j = 0; j < rows; ++j) {
            const auto vertex = static_cast<std::size_t>(i * rows + j);
            const double tube = 2 * kPi * (j + 0.5) / rows;
            const double r = kRing + kTube * std::cos(tube);
            errors.mean.add(static_cast<double>(mesh->meanCurvature[vertex]), (1 / kTube + std::cos(tube) / r) / 2);
            errors.gaussian.add(static_cast<double>(mesh->gaussianCurvature[vertex]), std::cos(tube) / (kTube * r));
        }
    }
    return errors;
}

TEST(CurvatureTruth, OfATorusIsApproachedWithTheSquareOfTheEdgeLength) {
    expectSecondOrder(torusErrors(32, 16), torusErrors(64, 32), torusErrors(128, 64));
}

TEST(CurvatureTruth, OfAPlaneIsZero) {
    const auto mesh = makePlane(10);
    // Turned out of the axes, so that nothing is zero by itself.
    for (std::size_t i = 0; i < static_cast<std::size_t>(mesh->numVertices); ++i) {
        float* p = mesh->vertices.get() + 3 * i;
        p[2] = 2 * p[0] - p[1];
    }
    mesh->updateNormals(true);
    ShapeIndex(mesh.get()).compute();
    for (std::size_t i = 0; i < static_cast<std::size_t>(mesh->numVertices); ++i) {
        const std::size_t x = i % 11;
        const std::size_t y = i / 11;
        if (x > 0 && x < 10 && y > 0 && y < 10) {
            EXPECT_EQ(mesh->meanCurvature[i], 0) << i;
            EXPECT_EQ(mesh->gaussianCurvature[i], 0) << i;
            EXPECT_EQ(mesh->shapeIndex[i], 0.5F) << i;
        }
    }
}

// A vertex that is curved in one direction only counts as flat.
TEST(CurvatureTruth, OfACylinderIsSetToZero) {
    constexpr int kColumns = 8;
    constexpr int kRows = 9;
    // Of a radius that keeps the angle deficits of its vertices below what counts as curved, per area.
    const auto mesh = makeGrid(kColumns, kRows, false, [](int i, int j, auto add) {
        const double angle = 2 * kPi * i / kColumns;
        add(1000 * std::cos(angle), 1000 * std::sin(angle), 500.0 * j);
    });
    const PlainCurvature estimate = plainCurvature(*mesh);
    ShapeIndex(mesh.get()).compute();
    for (int i = 0; i < kColumns; ++i) {
        for (int j = 1; j < kRows - 1; ++j) {
            const auto vertex = static_cast<std::size_t>(i * kRows + j);
            ASSERT_NEAR(estimate.unzeroedMean[vertex], 1 / 2000.0, 1e-4);
            EXPECT_EQ(mesh->meanCurvature[vertex], 0);
            EXPECT_EQ(mesh->maximumCurvature[vertex], 0);
            EXPECT_EQ(mesh->shapeIndex[vertex], 0.5F);
        }
    }
}

}  // namespace
}  // namespace talvek::test
