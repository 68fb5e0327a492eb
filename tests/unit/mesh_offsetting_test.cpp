// Runs of the operating mode that moves the surface by prescribed amounts.
#include <gtest/gtest.h>

#include <cmath>
#include <iostream>

#include "Vexo_Lib/load3d.h"
#include "api/session/session.h"
#include "mesh/shape_index.h"
#include "support/meshes.h"
#include "support/peak_memory.h"
#include "support/runs.h"
#include "weathering/gaussian_offset.h"
#include "weathering/random.h"
#include "weathering/run_mesh_offsetting.h"

namespace talvek::test {
namespace {

/// The lines of an OBJ text that begin with a key.
std::string linesOf(const std::string& text, std::string_view key) {
    std::string lines;
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = text.find('\n', begin) + 1;
        if (text.substr(begin, key.size()) == key) {
            lines += text.substr(begin, end - begin);
        }
        begin = end;
    }
    return lines;
}

std::unique_ptr<Object3D> bumpySphere() {
    auto mesh = makeSphere(10, 3);
    for (std::size_t i = 0; i < static_cast<std::size_t>(mesh->numVertices); ++i) {
        float* p = mesh->vertices.get() + 3 * i;
        const double bump = 1 + 0.05 * std::sin(1.3 * static_cast<double>(p[0])) *
                                    std::sin(1.1 * static_cast<double>(p[1])) *
                                    std::cos(0.9 * static_cast<double>(p[2]));
        for (int k = 0; k < 3; ++k) {
            p[k] = static_cast<float>(static_cast<double>(p[k]) * bump);
        }
    }
    return mesh;
}

/// Standard deviation of the distances of all vertices from the origin.
double radiusSpread(const Object3D& mesh) {
    double sum = 0;
    double squares = 0;
    for (std::size_t i = 0; i < mesh.vertexSpan().size(); i += 3) {
        const double r = std::hypot(static_cast<double>(mesh.vertices[i]), static_cast<double>(mesh.vertices[i + 1]),
                                    static_cast<double>(mesh.vertices[i + 2]));
        sum += r;
        squares += r * r;
    }
    const double mean = sum / mesh.numVertices;
    return std::sqrt(squares / mesh.numVertices - mean * mean);
}

TEST(ConstantOffset, MovesAPlaneByOffsetTimesDaysPerEpoch) {
    StoneRun run(*makePlane(3));
    run.epochs = 2;
    run.days = 4;
    run.environment = {{0.25F, 9, 9, 9}, {-0.5F, 9, 9, 9}};
    ASSERT_EQ(run.start(), TALVEK_OK);
    const auto first = run.frame(1);
    const auto second = run.frame(2);
    for (std::size_t i = 0; i < first->vertexSpan().size(); i += 3) {
        EXPECT_EQ(first->vertices[i + 2], 1);
        EXPECT_EQ(second->vertices[i + 2], -1);
    }
}

TEST(ConstantOffset, TheLastSurfaceOfOneEpochIsItsFrame) {
    StoneRun run(*makePlane(3));
    run.environment = {{0.25F, 9, 9, 9}};
    ASSERT_EQ(run.start(), TALVEK_OK);
    EXPECT_EQ(run.summaryText('w'), run.frameText(1));
    EXPECT_NE(run.summaryText('w'), run.summaryText('i'));
}

TEST(ConstantOffset, OfZeroLeavesTheGeometry) {
    StoneRun run(*makeSphere(10, 2));
    run.epochs = 2;
    run.environment = {{0, 1, 1, 1}, {0, 1, 1, 1}};
    ASSERT_EQ(run.start(), TALVEK_OK);
    EXPECT_EQ(run.frameText(1), run.summaryText('i'));
    EXPECT_EQ(run.frameText(2), run.summaryText('i'));
    EXPECT_EQ(run.summaryText('w'), run.summaryText('i'));
}

TEST(ConstantOffset, IsReportedBeforeItIsNarrowed) {
    StoneRun run(*makePlane(1));
    ASSERT_EQ(run.start(), TALVEK_OK);
    EpochRecord& epoch = session().epochTable.epoch(1);
    epoch.values = {1000, 1234.567891, 1234.567892, 1234.567893, 1234.567894};
    ASSERT_EQ(talvekStart(), TALVEK_OK);
    EXPECT_NE(run.log().find("offset per day: 1234.567891\ndelta const= 1234567.891000\ndelta mean= 1234567.892000\n"
                             "delta sigma = 1234567.893000\ndelta smooth = 1234567.894000\n"),
              std::string::npos);
    // The nearest single-precision number to the delta is 1234567.875.
    EXPECT_EQ(run.frame(1)->vertices[2], 1234567.875F);
}

TEST(RandomOffset, WithoutSpreadMovesByTheMean) {
    StoneRun run(*makePlane(3));
    run.model = TALVEK_MODEL_RANDOM_OFFSET;
    run.days = 2;
    run.environment = {{9, -0.375F, 0, 9}};
    ASSERT_EQ(run.start(), TALVEK_OK);
    const auto frame = run.frame(1);
    for (std::size_t i = 0; i < frame->vertexSpan().size(); i += 3) {
        EXPECT_EQ(frame->vertices[i + 2], -0.75F);
    }
}

TEST(RandomOffset, DrawsOnceForEachVertexInOrder) {
    StoneRun run(*makePlane(3));
    run.model = TALVEK_MODEL_RANDOM_OFFSET;
    run.environment = {{9, 0.1F, 0.3F, 9}};
    randomGenerator() = RandomGenerator();
    ASSERT_EQ(run.start(), TALVEK_OK);
    randomGenerator() = RandomGenerator();
    const auto frame = run.frame(1);
    for (std::size_t i = 0; i < frame->vertexSpan().size(); i += 3) {
        const double drawn = gaussianOffset(static_cast<double>(0.1F), static_cast<double>(0.3F));
        EXPECT_NEAR(static_cast<double>(frame->vertices[i + 2]), drawn, 1e-6);
    }
}

TEST(RandomOffset, IsTheSameInEveryFreshProcess) {
    StoneRun run(*makeSphere(5, 2));
    run.model = TALVEK_MODEL_RANDOM_OFFSET;
    randomGenerator() = RandomGenerator();
    ASSERT_EQ(run.start(), TALVEK_OK);
    const std::string first = run.frameText(1);
    ASSERT_EQ(run.start(), TALVEK_OK);
    EXPECT_NE(run.frameText(1), first) << "the generator goes on across runs";
    randomGenerator() = RandomGenerator();
    ASSERT_EQ(run.start(), TALVEK_OK);
    EXPECT_EQ(run.frameText(1), first);
}

TEST(Smoothing, LeavesAFlatSurface) {
    StoneRun run(*makePlane(5));
    run.model = TALVEK_MODEL_SMOOTHING;
    run.environment = {{9, 9, 9, -5}};
    ASSERT_EQ(run.start(), TALVEK_OK);
    EXPECT_EQ(run.frameText(1), run.summaryText('i'));
}

TEST(Smoothing, MovesByTheCurvatureOfTheSurfaceBeforeTheEpoch) {
    const auto mesh = bumpySphere();
    StoneRun run(*mesh);
    run.model = TALVEK_MODEL_SMOOTHING;
    run.epochs = 2;
    run.environment = {{0, 0, 0, -0.5F}, {0, 0, 0, -0.5F}};
    ASSERT_EQ(run.start(), TALVEK_OK);
    mesh->updateNormals(true);
    ShapeIndex shapeIndex(mesh.get());
    for (int epoch = 1; epoch <= 2; ++epoch) {
        shapeIndex.compute();
        for (std::size_t i = 0; i < mesh->vertexSpan().size(); ++i) {
            mesh->vertices[i] += mesh->meanCurvature[i / 3] * -0.5F * mesh->vertexNormals[i];
        }
        mesh->updateNormals(true);
        const auto frame = run.frame(epoch);
        for (std::size_t i = 0; i < mesh->vertexSpan().size(); ++i) {
            ASSERT_NEAR(static_cast<double>(frame->vertices[i]), static_cast<double>(mesh->vertices[i]), 1e-6);
        }
    }
}

// Only for some epochs: as the bumps go, more and more vertices curve alike in all directions and count as flat.
TEST(Smoothing, BringsTheRadiusSpreadOfABumpySphereDown) {
    StoneRun run(*bumpySphere());
    run.model = TALVEK_MODEL_SMOOTHING;
    run.epochs = 4;
    run.environment.assign(4, {0, 0, 0, -0.2F});
    ASSERT_EQ(run.start(), TALVEK_OK);
    double spread = radiusSpread(*LoadMeshFile(run.meshName().c_str()));
    const double before = spread;
    for (int epoch = 1; epoch <= 4; ++epoch) {
        const double after = radiusSpread(*run.frame(epoch));
        EXPECT_LT(after, spread) << epoch;
        spread = after;
    }
    std::cout << "radius spread from " << before << " to " << spread << "\n";
    EXPECT_LT(spread, 0.85 * before);
}

TEST(Smoothing, WithAPositiveAmountRoughens) {
    StoneRun run(*bumpySphere());
    run.model = TALVEK_MODEL_SMOOTHING;
    run.environment = {{0, 0, 0, 0.2F}};
    ASSERT_EQ(run.start(), TALVEK_OK);
    EXPECT_GT(radiusSpread(*run.frame(1)), radiusSpread(*LoadMeshFile(run.meshName().c_str())));
}

/// By how much a run's memory grows at most.
std::int64_t memoryOfSmoothing(const Object3D& mesh, std::int32_t epochs) {
    StoneRun run(mesh);
    run.model = TALVEK_MODEL_SMOOTHING;
    run.epochs = epochs;
    ::testing::internal::CaptureStdout();
    const PeakMemory memory;
    EXPECT_EQ(run.start(), TALVEK_OK);
    const std::int64_t growth = memory.growth();
    ::testing::internal::GetCapturedStdout();
    return growth;
}

// A thousand epochs' shape indices of this mesh would take ten megabytes.
TEST(Smoothing, OverAThousandEpochsNeedsNoMoreMemoryThanOverFour) {
    if (!kKnowsPeakMemory) {
        GTEST_SKIP() << "the memory of this process cannot be told";
    }
    const auto mesh = makeSphere(10, 4);
    const std::int64_t few = memoryOfSmoothing(*mesh, 4);
    EXPECT_LT(memoryOfSmoothing(*mesh, 1000), few + 4'000'000);
}

TEST(MeshOffsetting, WritesTheFramesOfAnyRun) {
    StoneRun run(*makeCube(1));
    run.epochs = 2;
    run.saveResults = true;
    ASSERT_EQ(run.start(), TALVEK_OK);
    EXPECT_EQ(run.listing(),
              "stone.inf stone.obj stone.obj.obj_i.obj stone.obj.obj_w.obj stone.obj.obj_w_0.obj "
              "stone.obj.obj_w_1.obj stone.obj.obj_w_2.obj");
    EXPECT_EQ(run.frameText(0), run.summaryText('i'));
    EXPECT_EQ(run.frameText(2), run.summaryText('w'));
    EXPECT_NE(linesOf(run.frameText(1), "v "), linesOf(run.frameText(2), "v "));
}

TEST(MeshOffsetting, WithoutEpochsWritesTheSummaryOnly) {
    StoneRun run(*makeCube(1));
    ASSERT_EQ(run.start(), TALVEK_OK);
    std::filesystem::remove(run.meshName() + ".obj_w_1.obj");
    session().numEpochs = 0;
    ASSERT_EQ(talvekStart(), TALVEK_OK);
    session().numEpochs = 1;
    EXPECT_EQ(run.listing(), "stone.inf stone.obj stone.obj.obj_i.obj stone.obj.obj_w.obj");
    EXPECT_NE(run.log().find("\tShape Index created!\n\nEnvironmental parameters for 0 epoch(s):\n\nFile "),
              std::string::npos);
    EXPECT_EQ(run.summaryText('w'), run.summaryText('i'));
}

TEST(MeshOffsetting, RefusesAMeshWithoutFaces) {
    StoneRun run(*makeMesh({0, 0, 0, 1, 0, 0, 0, 1, 0}, {}));
    EXPECT_EQ(run.start(), TALVEK_ERROR_MESH);
    EXPECT_TRUE(run.log().ends_with("ShapeIndex::ShapeIndex: object must have > 0 triangles\nProcessing ABORTED!\n"));
    EXPECT_EQ(run.listing(), "stone.inf stone.obj");
}

TEST(MeshOffsetting, MovesNothingUnderAModelThatIsNotDefined) {
    // The run driver refuses such a run; this is what another caller gets.
    StoneRun run(*makeCube(1));
    ASSERT_EQ(run.start(), TALVEK_OK);
    session().model = 3;
    runMeshOffsetting(*LoadMeshFile(run.meshName().c_str()));
    EXPECT_EQ(run.frameText(1), run.summaryText('i'));
}

TEST(MeshOffsetting, CarriesUndefinedOffsetsIntoTheFrames) {
    StoneRun run(*makeCube(1));
    run.environment = {{std::nanf(""), 0, 0, 0}};
    ASSERT_EQ(run.start(), TALVEK_OK);
    EXPECT_NE(run.frameText(1).find("nan"), std::string::npos);
}

}  // namespace
}  // namespace talvek::test
