// Runs of the operating mode in which each vertex weathers as its mineral does.
#include <gtest/gtest.h>

#include "Vexo_Lib/load3d.h"
#include "api/session/session.h"
#include "support/meshes.h"
#include "support/runs.h"
#include "weathering/run_mineral_mesh.h"

namespace talvek::test {
namespace {

constexpr std::string_view kLoaded = " loaded!\n\tStone will be considered inhomogeneous.\n";
constexpr std::string_view kNotLoaded = " NOT loaded!\n\tStone will be considered homogeneous.\n";

std::unique_ptr<Object3D> texturedPlane() {
    auto plane = makePlane(4);
    // Texels from 0 to 0.96: the far edge stays inside the map.
    layTexture(*plane, 0.24F, 0.24F);
    return plane;
}

class MineralMeshRun : public ::testing::Test {
  protected:
    void SetUp() override {
        run_.mode = TALVEK_MODE_GRAIN_WEAVER;
        run_.model = TALVEK_MODEL_ACID_RAIN;
        run_.epochs = 2;
        run_.days = 3650;
    }

    bool hasLogged(std::string_view end) const {
        return run_.log().find("\nMineral map " + run_.mapName() + std::string(end)) != std::string::npos;
    }

    /// The frames of a homogeneous stone.
    std::string homogeneousFrame(std::int32_t frame) {
        StoneRun other(*texturedPlane());
        other.mode = TALVEK_MODE_MESH_DATA;
        other.model = run_.model;
        other.epochs = run_.epochs;
        other.days = run_.days;
        EXPECT_EQ(other.start(), TALVEK_OK);
        return other.frameText(frame);
    }

    StoneRun run_{*texturedPlane()};
};

TEST_F(MineralMeshRun, OnWhiteIsThatOfAHomogeneousStone) {
    run_.addMap(plainBitmap(3, 3, kWhite));
    ASSERT_EQ(run_.start(), TALVEK_OK);
    EXPECT_TRUE(hasLogged(kLoaded));
    EXPECT_NE(run_.frameText(1), run_.summaryText('i'));
    EXPECT_EQ(run_.frameText(1), homogeneousFrame(1));
    EXPECT_EQ(run_.frameText(2), homogeneousFrame(2));
}

TEST_F(MineralMeshRun, OnGreyMovesNothing) {
    run_.addMap(plainBitmap(3, 3, kGrey));
    ASSERT_EQ(run_.start(), TALVEK_OK);
    EXPECT_EQ(run_.frameText(2), run_.summaryText('i'));
}

TEST_F(MineralMeshRun, OnAMapHalfWhiteAndHalfGreyMovesOneHalf) {
    run_.addMap(paintedBitmap(2, 1, [](int x, int) { return x == 0 ? kWhite : kGrey; }));
    run_.epochs = 1;
    ASSERT_EQ(run_.start(), TALVEK_OK);
    const auto frame = run_.frame(1);
    int moved = 0;
    for (std::size_t i = 0; i < frame->vertexSpan().size(); i += 3) {
        // Columns 0, 1 and 2 have texels 0, 0.24 and 0.48.
        const bool isOnWhite = frame->vertices[i] < 2.5F;
        EXPECT_EQ(frame->vertices[i + 2] < 0, isOnWhite) << i / 3;
        moved += frame->vertices[i + 2] < 0 ? 1 : 0;
    }
    EXPECT_EQ(moved, 15);
}

TEST_F(MineralMeshRun, WithoutAMapIsThatOfAHomogeneousStone) {
    ASSERT_EQ(run_.start(), TALVEK_OK);
    EXPECT_TRUE(hasLogged(kNotLoaded));
    EXPECT_EQ(run_.frameText(2), homogeneousFrame(2));
}

TEST_F(MineralMeshRun, WithABrokenMapIsThatOfAHomogeneousStone) {
    writeFile(run_.mapName(), bitmapBytes(plainBitmap(3, 3, kGrey)).substr(0, 60));
    ASSERT_EQ(run_.start(), TALVEK_OK);
    EXPECT_TRUE(hasLogged(kNotLoaded));
    EXPECT_EQ(run_.frameText(2), homogeneousFrame(2));
}

TEST_F(MineralMeshRun, WithAMapOfEightBitsMovesNothing) {
    Bitmap bitmap;
    bitmap.width = 4;
    bitmap.height = 1;
    bitmap.bitsPerPixel = 8;
    bitmap.pixels = std::string(4, '\xff');
    run_.addMap(bitmap);
    ASSERT_EQ(run_.start(), TALVEK_OK);
    EXPECT_TRUE(hasLogged(kLoaded));
    EXPECT_EQ(run_.frameText(2), run_.summaryText('i'));
}

TEST_F(MineralMeshRun, OnAMeshWithoutTexelsIsThatOfAHomogeneousStone) {
    writeFile(run_.meshName(), objText(*makePlane(4)));
    run_.addMap(plainBitmap(3, 3, kGrey));
    ASSERT_EQ(run_.start(), TALVEK_OK);
    EXPECT_TRUE(hasLogged(kNotLoaded));
    EXPECT_EQ(run_.frameText(2), homogeneousFrame(2));
}

TEST_F(MineralMeshRun, SurvivesTexelIndicesOutOfRange) {
    writeFile(run_.meshName(), "v 0 0 0\nv 1 0 0\nv 0 1 0\nvt 0.5 0.5\nf 1/1 2/7 3/-5\nf 1/1000000 2/1 3/1\n");
    run_.addMap(plainBitmap(3, 3, kWhite));
    ASSERT_EQ(run_.start(), TALVEK_OK);
    const auto frame = run_.frame(2);
    // The last corners of vertices 1 and 2 find white, that of vertex 0 finds nothing and nothing came before.
    EXPECT_EQ(frame->vertices[2], 0);
    EXPECT_LT(frame->vertices[5], 0);
    EXPECT_LT(frame->vertices[8], 0);
}

TEST_F(MineralMeshRun, WithoutEpochsWritesTheSummaryOnly) {
    ASSERT_EQ(run_.start(), TALVEK_OK);
    for (const int frame : {1, 2}) {
        std::filesystem::remove(run_.meshName() + ".obj_w_" + std::to_string(frame) + ".obj");
    }
    session().numEpochs = 0;
    ASSERT_EQ(talvekStart(), TALVEK_OK);
    session().numEpochs = 1;
    EXPECT_EQ(run_.listing(), "stone.inf stone.obj stone.obj.obj_i.obj stone.obj.obj_w.obj");
    EXPECT_EQ(run_.summaryText('w'), run_.summaryText('i'));
}

TEST_F(MineralMeshRun, WithoutAModelMovesByTheConstantOffset) {
    // The run driver refuses such a run; this is what another caller gets.
    run_.epochs = 1;
    run_.days = 4;
    run_.environment = {{0.25F, 0, 0, 0}};
    ASSERT_EQ(run_.start(), TALVEK_OK);
    session().model = 0;
    session().logFile = system::File::openForWriting(session().logFileName);
    runMineralMesh(*LoadMeshFile(run_.meshName().c_str()));
    session().logFile.close();
    EXPECT_TRUE(
        run_.log().ends_with("\nepoch: 1\tdays: 4\noffset per day: 0.250000\ndelta = 1.0000\n"
                             "\nSaving output object files...\n"));
    EXPECT_EQ(run_.frame(1)->vertices[2], 1);
}

}  // namespace
}  // namespace talvek::test
