// Runs of the operating mode that weathers a resampling of the surface.
#include <gtest/gtest.h>

#include "Vexo_Lib/load3d.h"
#include "api/session/session.h"
#include "support/meshes.h"
#include "support/runs.h"
#include "weathering/rates.h"
#include "weathering/run_mineral_grid.h"

namespace talvek::test {
namespace {

/// Cells in each direction that the plane covers.
constexpr int kCovered = 95;

/// A plane of 10 x 10 mm at z = 1 in a corner of the texture.
std::unique_ptr<Object3D> texturedPlane() {
    auto plane = makePlane(10);
    layTexture(*plane, 0.0205F, 0.0205F);
    for (std::size_t i = 2; i < plane->vertexSpan().size(); i += 3) {
        plane->vertices[i] = 1;
    }
    return plane;
}

class MineralGridRun : public ::testing::Test {
  protected:
    void SetUp() override {
        run_.mode = TALVEK_MODE_QEMSCAN;
        run_.model = TALVEK_MODEL_ACID_RAIN;
        run_.days = 36500;
    }

    double delta() const {
        return weatheringDelta(*session().materialParams, session().epochTable.epoch(1), session().model);
    }

    StoneRun run_{*texturedPlane()};
};

TEST_F(MineralGridRun, MovesAHomogeneousPlaneByTheDelta) {
    ASSERT_EQ(run_.start(), TALVEK_OK);
    const auto frame = run_.frame(1);
    ASSERT_EQ(frame->numVertices, kCovered * kCovered);
    for (std::size_t i = 2; i < frame->vertexSpan().size(); i += 3) {
        ASSERT_NEAR(static_cast<double>(frame->vertices[i]), 1 + delta(), 1e-5);
    }
}

TEST_F(MineralGridRun, ShowsBothFactorsAndABilinearBlendBetween) {
    // A pixel spans 46 cells. The first is of class 16, factor 0.94, the others are of class 5, factor 0.77.
    run_.addMap(paintedBitmap(10, 10, [](int x, int) { return x == 0 ? Color{0, 0, 255} : Color{0, 192, 0}; }));
    ASSERT_EQ(run_.start(), TALVEK_OK);
    const auto frame = run_.frame(1);
    ASSERT_EQ(frame->numVertices, kCovered * kCovered);
    for (std::size_t i = 0; i < frame->vertexSpan().size(); i += 3) {
        const double column = static_cast<double>(static_cast<std::int64_t>(i / 3) / kCovered);
        const double factor = column < 46 ? 0.94 + (0.77 - 0.94) * column / 46 : 0.77;
        ASSERT_NEAR(static_cast<double>(frame->vertices[i + 2]), 1 + delta() * factor, 1e-5) << "column " << column;
    }
}

TEST_F(MineralGridRun, OnGreyMovesNothing) {
    run_.addMap(plainBitmap(5, 5, kGrey));
    ASSERT_EQ(run_.start(), TALVEK_OK);
    const auto frame = run_.frame(1);
    for (std::size_t i = 2; i < frame->vertexSpan().size(); i += 3) {
        ASSERT_NEAR(static_cast<double>(frame->vertices[i]), 1, 1e-5);
    }
}

TEST_F(MineralGridRun, WithAMapOfEightBitsMovesNothing) {
    Bitmap bitmap;
    bitmap.width = 4;
    bitmap.height = 4;
    bitmap.bitsPerPixel = 8;
    bitmap.pixels = std::string(16, '\xff');
    run_.addMap(bitmap);
    ASSERT_EQ(run_.start(), TALVEK_OK);
    EXPECT_NE(run_.log().find(" loaded!\n\tStone will be considered inhomogeneous.\n"), std::string::npos);
    EXPECT_NEAR(static_cast<double>(run_.frame(1)->vertices[2]), 1, 1e-5);
}

TEST_F(MineralGridRun, OnAMeshWithoutTexelsWritesFramesWithoutVertices) {
    writeFile(run_.meshName(), objText(*makePlane(2)));
    ASSERT_EQ(run_.start(), TALVEK_OK);
    EXPECT_EQ(run_.frameText(1).find("\nv "), std::string::npos);
    EXPECT_EQ(run_.frameText(1).find("\nf "), std::string::npos);
    EXPECT_EQ(run_.frameText(1), run_.summaryText('w'));
    EXPECT_EQ(talvekGetFrameNumTriangles(1), 0);
}

TEST_F(MineralGridRun, OnASurfacePaintedClockwiseWritesFramesWithoutVertices) {
    auto plane = texturedPlane();
    for (std::size_t i = 0; i < static_cast<std::size_t>(plane->numFaces); ++i) {
        std::swap(plane->texelIndex[3 * i], plane->texelIndex[3 * i + 1]);
        std::swap(plane->vertexIndex[3 * i], plane->vertexIndex[3 * i + 1]);
    }
    writeFile(run_.meshName(), objText(*plane));
    ASSERT_EQ(run_.start(), TALVEK_OK);
    EXPECT_EQ(run_.frameText(1).find("\nv "), std::string::npos);
}

TEST_F(MineralGridRun, SurvivesHostileTexels) {
    writeFile(run_.meshName(),
              "v 0 0 1\nv 1 0 1\nv 0 1 1\nvt nan 0\nvt 1e30 -1e30\nvt -3e9 3e9\nvt inf 0.5\nvt 0.5 0.5\n"
              "f 1/1 2/2 3/3\nf 1/2 2/3 3/5\nf 1/3 2/2 3/5\nf 1/4 2/5 3/2\nf 1/5 2/5 3/5\nf 1/99 2/-7 3/1\nf 1 2 3\n");
    ASSERT_EQ(run_.start(), TALVEK_OK);
}

TEST_F(MineralGridRun, WithoutEpochsWritesTheFirstResampling) {
    ASSERT_EQ(run_.start(), TALVEK_OK);
    std::filesystem::remove(run_.meshName() + ".obj_w_1.obj");
    session().numEpochs = 0;
    ASSERT_EQ(talvekStart(), TALVEK_OK);
    session().numEpochs = 1;
    EXPECT_EQ(run_.listing(), "stone.inf stone.obj stone.obj.obj_i.obj stone.obj.obj_w.obj");
    EXPECT_NE(run_.log().find("Environmental parameters for 0 epoch(s):\n\nFile "), std::string::npos);
    const auto last = LoadMeshFile((run_.meshName() + ".obj_w.obj").c_str());
    EXPECT_EQ(last->numVertices, kCovered * kCovered);
    EXPECT_EQ(last->numFaces, 47 * 47 * 8);
}

TEST_F(MineralGridRun, ResamplesAfterEveryEpoch) {
    // The last surface is rebuilt once more from the resampling of the last frame.
    run_.epochs = 2;
    run_.saveResults = true;
    ASSERT_EQ(run_.start(), TALVEK_OK);
    EXPECT_EQ(run_.listing(),
              "stone.inf stone.obj stone.obj.obj_i.obj stone.obj.obj_w.obj stone.obj.obj_w_0.obj "
              "stone.obj.obj_w_1.obj stone.obj.obj_w_2.obj");
    EXPECT_EQ(run_.frameText(0), run_.summaryText('i'));
    EXPECT_EQ(run_.log().find("Saving output object files"), std::string::npos);
    const double first = static_cast<double>(run_.frame(1)->vertices[2]) - 1;
    const double second = static_cast<double>(run_.frame(2)->vertices[2]) - 1;
    EXPECT_NEAR(second, 2 * first, 1e-4);
}

TEST(MineralGrid, NeedsNoArrayOfVertices) {
    StoneRun run(*texturedPlane());
    run.mode = TALVEK_MODE_QEMSCAN;
    run.model = TALVEK_MODEL_ACID_RAIN;
    ASSERT_EQ(run.start(), TALVEK_OK);
    ::testing::internal::CaptureStdout();
    runMineralGrid(Object3D());
    ::testing::internal::GetCapturedStdout();
    EXPECT_EQ(run.frame(1)->numVertices, 0);
}

}  // namespace
}  // namespace talvek::test
