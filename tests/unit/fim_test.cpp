// Reading geometry images and making meshes of them.
#include "Vexo_Lib/fim.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "support/error_reports.h"
#include "support/mesh_file_writers.h"
#include "support/test_files.h"

namespace talvek::test {
namespace {

FimImage makeImage(std::int32_t width, std::int32_t height, const Floats& pixels, std::int32_t channels = 3) {
    return {.width = width,
            .height = height,
            .channels = channels,
            .data = copyArray(pixels.data(), static_cast<std::int64_t>(pixels.size()))};
}

Floats withHole(Floats pixels, std::size_t pixel) {
    std::fill_n(pixels.begin() + static_cast<std::ptrdiff_t>(3 * pixel), 3, 0.0F);
    return pixels;
}

Ints facesOf(const Object3D& mesh) {
    return {mesh.faceSpan().begin(), mesh.faceSpan().end()};
}

TEST(FimTriangulation, MakesTwoTrianglesOfACell) {
    const auto mesh = TriangulateFimImage(makeImage(2, 2, fimPlane(2, 2)));
    ASSERT_NE(mesh, nullptr);
    EXPECT_EQ(mesh->numVertices, 4);
    EXPECT_EQ(facesOf(*mesh), (Ints{0, 1, 2, 0, 2, 3}));
    EXPECT_EQ(Floats(&mesh->vertices[9], &mesh->vertices[12]), (Floats{10, 1, 5})) << "vertex 3 is pixel (0, 1)";
    for (int i = 0; i < 8; ++i) {
        EXPECT_FALSE(std::isfinite(mesh->texels[std::size_t(i)])) << i;
    }
}

TEST(FimTriangulation, NumbersVerticesAsCellsMeetThem) {
    const auto mesh = TriangulateFimImage(makeImage(3, 3, fimPlane(3, 3)));
    ASSERT_NE(mesh, nullptr);
    EXPECT_EQ(mesh->numVertices, 9);
    EXPECT_EQ(mesh->numFaces, 8);
    const std::pair<float, float> expected[] = {{10, 0}, {11, 0}, {11, 1}, {10, 1}, {11, 2},
                                                {10, 2}, {12, 0}, {12, 1}, {12, 2}};
    for (std::size_t i = 0; i < 9; ++i) {
        EXPECT_EQ(std::pair(mesh->vertices[3 * i], mesh->vertices[3 * i + 1]), expected[i]) << i;
    }
}

TEST(FimTriangulation, DividesTexelsByTheSizeLessTwo) {
    const auto mesh = TriangulateFimImage(makeImage(4, 3, fimPlane(4, 3)));
    ASSERT_NE(mesh, nullptr);
    EXPECT_EQ(mesh->numTexels, 12);
    EXPECT_EQ(mesh->texelIndex, nullptr);
    for (std::size_t i = 0; i < 12; ++i) {
        EXPECT_EQ(mesh->texels[2 * i], (mesh->vertices[3 * i] - 10) / 2.0F);
        EXPECT_EQ(mesh->texels[2 * i + 1], mesh->vertices[3 * i + 1]);
    }
    EXPECT_EQ(*std::max_element(mesh->texels.get(), mesh->texels.get() + 24), 2);
}

TEST(FimTriangulation, MakesNothingOfACellWithAHoleInItsFirstCorner) {
    const auto mesh = TriangulateFimImage(makeImage(2, 2, withHole(fimPlane(2, 2), 0)));
    ASSERT_NE(mesh, nullptr);
    EXPECT_EQ(mesh->numFaces, 0);
    EXPECT_EQ(mesh->numVertices, 0);
}

TEST(FimTriangulation, MakesOneTriangleBesideAHole) {
    const auto lower = TriangulateFimImage(makeImage(2, 2, withHole(fimPlane(2, 2), 1)));
    ASSERT_NE(lower, nullptr);
    // The vertices are A, D, C, the triangle is A, C, D.
    EXPECT_EQ(facesOf(*lower), (Ints{0, 2, 1}));
    EXPECT_EQ(lower->vertices[3 * 1 + 0], 10);
    const auto upper = TriangulateFimImage(makeImage(2, 2, withHole(fimPlane(2, 2), 2)));
    ASSERT_NE(upper, nullptr);
    EXPECT_EQ(facesOf(*upper), (Ints{0, 1, 2}));
    const auto none = TriangulateFimImage(makeImage(2, 2, withHole(fimPlane(2, 2), 3)));
    ASSERT_NE(none, nullptr);
    EXPECT_EQ(none->numFaces, 0);
}

TEST(FimTriangulation, APixelIsValidWithOneValueOtherThanZero) {
    const auto mesh = TriangulateFimImage(makeImage(2, 2, {0, 0, -1e-30F, 1, 0, 0, 0, 1, 0, 0, NAN, 0}));
    ASSERT_NE(mesh, nullptr);
    EXPECT_EQ(mesh->numFaces, 0) << "not-a-number alone is a hole";
    const auto valid = TriangulateFimImage(makeImage(2, 2, {0, 0, -1e-30F, 1, 0, 0, 0, 1, 0, 0, NAN, 1}));
    ASSERT_NE(valid, nullptr);
    EXPECT_EQ(valid->numFaces, 2);
}

TEST(FimTriangulation, ColoursFacesGrey) {
    const auto mesh = TriangulateFimImage(makeImage(2, 2, fimPlane(2, 2)));
    ASSERT_NE(mesh, nullptr);
    EXPECT_TRUE(std::all_of(mesh->faceColours.get(), mesh->faceColours.get() + 6, [](float c) { return c == 0.8F; }));
}

TEST(FimTriangulation, RefusesOtherThanThreeChannels) {
    for (const std::int32_t channels : {0, 1, 2, 4}) {
        EXPECT_EQ(TriangulateFimImage(makeImage(2, 2, Floats(16, 1), channels)), nullptr);
    }
}

TEST(FimTriangulation, MakesNothingOfASingleRowOrColumn) {
    for (const auto& [width, height] : {std::pair{1, 5}, {5, 1}, {0, 5}, {5, 0}, {0, 0x7FFFFFFF}, {0x7FFFFFFF, 0}}) {
        const auto mesh = TriangulateFimImage(makeImage(width, height, Floats(15, 1)));
        ASSERT_NE(mesh, nullptr);
        EXPECT_EQ(mesh->numFaces, 0);
    }
}

class FimReader : public ::testing::Test {
  protected:
    std::unique_ptr<Object3D> load(const std::string& bytes) {
        writeFile(path_, bytes);
        return LoadFimFile(path_.c_str());
    }

    /// A plane whose first pixel is replaced.
    std::unique_ptr<Object3D> loadWithFirst(float x, float y, float z) {
        Floats pixels = fimPlane(3, 3);
        std::copy_n(std::initializer_list<float>{x, y, z}.begin(), 3, pixels.begin());
        return load(fimBytes(3, 3, 3, pixels));
    }

    void expectDamaged(const Ints& header) {
        CaughtReports reports;
        EXPECT_EQ(load(bytesOf(header)), nullptr);
        expectReportBlock(reports.lines(), "load3d.cpp", "damaged file " + path_);
    }

    TempFolder folder_;
    std::string path_ = folder_.file("scan.fim");
};

TEST_F(FimReader, MovesTheMeshByTheFirstPixel) {
    const auto mesh = loadWithFirst(10, 0, 0);
    ASSERT_NE(mesh, nullptr);
    EXPECT_EQ(mesh->vertices[0], 20) << "the first pixel itself moves too";
    EXPECT_EQ(mesh->vertices[3], 21);
    EXPECT_EQ(mesh->vertices[5], 5);
    EXPECT_EQ(mesh->largestCoordinate, 22);
}

TEST_F(FimReader, DoesNotMoveTheMeshByNextToNothing) {
    for (const float z : {0.0F, 0.00005F, -0.0001F}) {
        const auto mesh = loadWithFirst(0, 0, z);
        ASSERT_NE(mesh, nullptr);
        const auto [smallest, largest] = std::minmax_element(mesh->vertexSpan().begin(), mesh->vertexSpan().end());
        EXPECT_EQ(*largest, 12) << z;
        EXPECT_EQ(*smallest, std::min(z, 0.0F));
        EXPECT_EQ(mesh->largestCoordinate, 0) << "left to what is done for every format";
    }
    const auto moved = loadWithFirst(0, 0, -0.00011F);
    ASSERT_NE(moved, nullptr);
    EXPECT_EQ(moved->vertices[2], -0.00011F + -0.00011F);
}

TEST_F(FimReader, ColoursFacesWhite) {
    const auto mesh = load(fimBytes(2, 2, 3, fimPlane(2, 2)));
    ASSERT_NE(mesh, nullptr);
    EXPECT_TRUE(std::all_of(mesh->faceColours.get(), mesh->faceColours.get() + 6, [](float c) { return c == 1; }));
    EXPECT_EQ(mesh->texelIndex, nullptr);
}

TEST_F(FimReader, TakesMissingPixelsForHoles) {
    const std::string whole = fimBytes(2, 2, 3, fimPlane(2, 2));
    const auto mesh = load(whole.substr(0, whole.size() - 12));
    ASSERT_NE(mesh, nullptr);
    EXPECT_EQ(mesh->numFaces, 0);
    const auto empty = load("");
    EXPECT_EQ(empty, nullptr) << "no channels";
}

TEST_F(FimReader, RefusesFourChannelsWithoutAReport) {
    CaughtReports reports;
    EXPECT_EQ(load(fimBytes(2, 2, 4, Floats(16, 1))), nullptr);
    EXPECT_TRUE(reports.lines().empty());
}

TEST_F(FimReader, ReportsAFileThatIsNotThere) {
    CaughtReports reports;
    EXPECT_EQ(LoadFimFile(path_.c_str()), nullptr);
    expectReportBlock(reports.lines(), "load3d.cpp", "cannot load " + path_);
}

TEST_F(FimReader, RefusesDimensionsThatCannotBeTrue) {
    expectDamaged({-1, 2, 3});
    expectDamaged({2, -1, 3});
    expectDamaged({2, 2, -3});
    expectDamaged({0x7FFFFFFF, 0x7FFFFFFF, 0x7FFFFFFF});
    // Products that come back to 0 or to something small in 32 or 64 bits.
    expectDamaged({65536, 65536, 3});
    expectDamaged({1 << 30, 1 << 30, 16});
    expectDamaged({0x55555556, 3, 3});
}

TEST_F(FimReader, ReadsAnImageOfTheLargestPromise) {
    // 48 bytes, of which 36 are pixels.
    constexpr std::int32_t kMostRows = ((1 << 20) + 4 * 48 + 36) / 24;
    const auto mesh = load(bytesOf(Ints{2, kMostRows, 3}) + bytesOf(Floats(9, 1)));
    ASSERT_NE(mesh, nullptr);
    EXPECT_EQ(mesh->numFaces, 0);
    CaughtReports reports;
    EXPECT_EQ(load(bytesOf(Ints{2, kMostRows + 1, 3}) + bytesOf(Floats(9, 1))), nullptr);
}

}  // namespace
}  // namespace talvek::test
