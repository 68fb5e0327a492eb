// Surfaces whose weathering can be told without computing it.
#include <cmath>

#include "interface/host_session.h"
#include "support/meshes.h"

namespace talvek::test {
namespace {

class AnalyticTruths : public HostSession {
  protected:
    /// Weathers a mesh and returns the corners of a frame's triangles.
    Floats weathered(const Object3D& mesh, std::int32_t model, std::int32_t epochs, const float* environment) {
        resetSession();
        nameMesh(objText(mesh));
        setUp(TALVEK_MODE_MESH_DATA, model, epochs, 3650);
        EXPECT_EQ(TALVEK_CALL(talvekSetEpochParams)(0, environment), TALVEK_OK);
        EXPECT_EQ(start(), TALVEK_OK);
        Floats vertices(9 * static_cast<std::size_t>(mesh.numFaces));
        Floats normals(vertices.size());
        EXPECT_EQ(
            TALVEK_CALL(talvekGetFrameGeometry)(static_cast<std::uint32_t>(epochs), vertices.data(), normals.data()),
            TALVEK_OK);
        return vertices;
    }

    /// Rain alone at an acidity of 3 takes away (27.38 + 6.56) * Rv / 1000 in a year; this much in ten years.
    static constexpr float kRain[4] = {0, 0, 0.5F, 3};
    static constexpr double kPerEpoch = (27.38 + 6.56) * 0.5 * 10 / 1000;
};

TEST_F(AnalyticTruths, APlaneMovesByTheDelta) {
    const auto plane = makePlane(6);
    const Floats corners = weathered(*plane, TALVEK_MODEL_ACID_RAIN, 4, kRain);
    for (std::size_t i = 0; i < corners.size(); i += 3) {
        const auto vertex = static_cast<std::size_t>(plane->faceSpan()[i / 3]);
        ASSERT_EQ(corners[i], plane->vertexSpan()[3 * vertex]);
        ASSERT_EQ(corners[i + 1], plane->vertexSpan()[3 * vertex + 1]);
        ASSERT_NEAR(corners[i + 2], -4 * kPerEpoch, 1e-6);
    }
}

TEST_F(AnalyticTruths, ASphereLosesTheDeltaOfItsRadiusInEveryEpoch) {
    for (const std::int32_t epochs : {1, 5, 10}) {
        const Floats corners = weathered(*makeSphere(20, 3), TALVEK_MODEL_ACID_RAIN, epochs, kRain);
        for (std::size_t i = 0; i < corners.size(); i += 3) {
            // The normals of the facets are not quite radial.
            ASSERT_NEAR(std::hypot(corners[i], corners[i + 1], corners[i + 2]), 20 - epochs * kPerEpoch, 2e-3);
        }
    }
}

TEST_F(AnalyticTruths, ACrustGrowsOutwards) {
    constexpr float kSmog[4] = {1e-9F, 1e-9F, 0, 7};
    for (const std::int32_t model : {TALVEK_MODEL_SO2_CRUST, TALVEK_MODEL_SO2_NO2_CRUST}) {
        const Floats corners = weathered(*makeSphere(20, 2), model, 2, kSmog);
        for (std::size_t i = 0; i < corners.size(); i += 3) {
            ASSERT_GT(std::hypot(corners[i], corners[i + 1], corners[i + 2]), 20.0F);
        }
    }
}

TEST_F(AnalyticTruths, ACubeRecedesAlongTheMeanOfItsFaces) {
    // Each corner moves against the mean of the unit normals of its triangles, which are two of one side and one of
    // another, or any other split of what meets there.
    const auto cube = makeCube(10);
    cube->updateNormals(true);
    const Floats corners = weathered(*cube, TALVEK_MODEL_ACID_RAIN, 1, kRain);
    for (std::size_t i = 0; i < corners.size(); i += 3) {
        const auto vertex = static_cast<std::size_t>(cube->faceSpan()[i / 3]);
        double moved = 0;
        for (std::size_t k = 0; k < 3; ++k) {
            const double step = static_cast<double>(corners[i + k] - cube->vertexSpan()[3 * vertex + k]);
            EXPECT_NEAR(step, -kPerEpoch * static_cast<double>(cube->normalSpan()[3 * vertex + k]), 2e-6);
            EXPECT_GT(step * (cube->vertexSpan()[3 * vertex + k] > 0 ? -1 : 1), 0) << "towards the middle";
            moved += step * step;
        }
        EXPECT_NEAR(std::sqrt(moved), kPerEpoch, 2e-6);
    }
}

TEST_F(AnalyticTruths, ACubeCornerOfThreeLikeTrianglesRecedesDiagonally) {
    const auto corner = makeMesh({0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 1}, {0, 2, 1, 0, 3, 2, 0, 1, 3});
    const Floats corners = weathered(*corner, TALVEK_MODEL_ACID_RAIN, 1, kRain);
    for (std::size_t k = 0; k < 3; ++k) {
        EXPECT_NEAR(corners[k], kPerEpoch / std::sqrt(3.0), 1e-6);
    }
}

TEST_F(AnalyticTruths, WithoutGasOrRainNothingMoves) {
    constexpr float kNothing[4] = {0, 0, 0, 3};
    const auto sphere = makeSphere(20, 1);
    for (const std::int32_t model : {1, 2, 3}) {
        weathered(*sphere, model, 2, kNothing);
        EXPECT_EQ(text("stone.obj.obj_w_2.obj"), text("stone.obj.obj_i.obj")) << model;
    }
}

}  // namespace
}  // namespace talvek::test
