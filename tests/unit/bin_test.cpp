// Reading BIN files.
#include "Vexo_Lib/bin.h"

#include <gtest/gtest.h>

#include "support/error_reports.h"
#include "support/mesh_file_writers.h"
#include "support/meshes.h"
#include "support/test_files.h"

namespace talvek::test {
namespace {

class BinReader : public ::testing::Test {
  protected:
    std::unique_ptr<Object3D> read(const std::string& bytes) {
        writeFile(path_, bytes);
        return ReadBinFile(path_.c_str());
    }

    void expectTetrahedron(const Object3D& mesh) {
        EXPECT_TRUE(std::ranges::equal(mesh.vertexSpan(), Tetrahedron::kVertices));
        EXPECT_TRUE(std::ranges::equal(mesh.faceSpan(), Tetrahedron::kFaces));
    }

    void expectNoTexels(const Object3D& mesh) {
        EXPECT_EQ(mesh.numTexels, 0);
        EXPECT_EQ(mesh.texels, nullptr);
        EXPECT_EQ(mesh.texelIndex, nullptr);
        EXPECT_STREQ(mesh.label, "");
    }

    /// The counts cannot be true: no mesh, and a report.
    void expectDamaged(const std::string& bytes) {
        CaughtReports reports;
        EXPECT_EQ(read(bytes), nullptr);
        expectReportBlock(reports.lines(), "bin.cpp", "damaged file " + path_);
    }

    TempFolder folder_;
    std::string path_ = folder_.file("mesh.bin");
    const std::string tetrahedron_ = binBytes(Tetrahedron::kVertices, Tetrahedron::kFaces);
    const std::string texels_ = bytesOf(Tetrahedron::kTexels);
};

TEST_F(BinReader, ReadsAMeshThatEndsBehindItsFaces) {
    const auto mesh = read(tetrahedron_);
    ASSERT_NE(mesh, nullptr);
    expectTetrahedron(*mesh);
    expectNoTexels(*mesh);
}

TEST_F(BinReader, HasNeitherTexelsNorLabelWhenTheFileEndsBehindTheLabel) {
    const auto mesh = read(tetrahedron_ + binLabel("stone", 0));
    ASSERT_NE(mesh, nullptr);
    expectTetrahedron(*mesh);
    expectNoTexels(*mesh);
}

TEST_F(BinReader, ReadsATexelForEachVertex) {
    const auto mesh = read(tetrahedron_ + binLabel("stone", 0) + texels_);
    ASSERT_NE(mesh, nullptr);
    expectTetrahedron(*mesh);
    EXPECT_EQ(mesh->numTexels, 4);
    EXPECT_TRUE(std::equal(Tetrahedron::kTexels.begin(), Tetrahedron::kTexels.end(), mesh->texels.get()));
    EXPECT_TRUE(std::equal(Tetrahedron::kFaces.begin(), Tetrahedron::kFaces.end(), mesh->texelIndex.get()));
    EXPECT_NE(mesh->texelIndex.get(), mesh->vertexIndex.get());
    EXPECT_STREQ(mesh->label, "stone");
}

TEST_F(BinReader, HasNeitherTexelsNorLabelWhenTheTexelsAreCut) {
    const auto mesh = read(tetrahedron_ + binLabel("stone", 0) + texels_.substr(0, texels_.size() - 1));
    ASSERT_NE(mesh, nullptr);
    expectTetrahedron(*mesh);
    expectNoTexels(*mesh);
}

TEST_F(BinReader, ReadsTexelsWithTheirIndex) {
    const Ints index = {0, 1, 1, 1, 1, 0, 0, 0, 0, 1, 0, 1};
    const auto mesh =
        read(tetrahedron_ + binLabel("stone", 0xFF) + bytesOf(Ints{2}) + bytesOf(Floats{1, 2, 3, 4}) + bytesOf(index));
    ASSERT_NE(mesh, nullptr);
    expectTetrahedron(*mesh);
    EXPECT_EQ(mesh->numTexels, 2);
    EXPECT_EQ(mesh->texels[3], 4);
    EXPECT_TRUE(std::equal(index.begin(), index.end(), mesh->texelIndex.get()));
    EXPECT_STREQ(mesh->label, "stone");
}

TEST_F(BinReader, ReadsATexelIndexWithoutTexels) {
    const auto mesh = read(tetrahedron_ + binLabel("", 0xFF) + bytesOf(Ints{0}) + bytesOf(Tetrahedron::kFaces));
    ASSERT_NE(mesh, nullptr);
    EXPECT_EQ(mesh->numTexels, 0);
    EXPECT_NE(mesh->texels, nullptr);
    EXPECT_EQ(mesh->texelIndex[1], 2);
}

TEST_F(BinReader, FillsACutTexelIndexWithZeros) {
    const auto mesh = read(tetrahedron_ + binLabel("stone", 0xFF) + bytesOf(Ints{4}) + texels_ + bytesOf(Ints{3}));
    ASSERT_NE(mesh, nullptr);
    EXPECT_EQ(mesh->numTexels, 4);
    EXPECT_EQ(mesh->texelIndex[0], 3);
    EXPECT_EQ(mesh->texelIndex[11], 0);
    EXPECT_STREQ(mesh->label, "stone");
}

TEST_F(BinReader, EndsALabelOfNineteenCharactersBeforeTheMarker) {
    const std::string label = "nineteen characters";
    const auto mesh = read(tetrahedron_ + binLabel(label, 'x') + texels_);
    ASSERT_NE(mesh, nullptr);
    EXPECT_EQ(mesh->label, label);
    const auto indexed = read(tetrahedron_ + binLabel(label, 0xFF) + bytesOf(Ints{0}) + bytesOf(Tetrahedron::kFaces));
    ASSERT_NE(indexed, nullptr);
    EXPECT_EQ(indexed->label, label);
}

TEST_F(BinReader, EndsALabelAtItsFirstNul) {
    const auto mesh = read(tetrahedron_ + binLabel(std::string("a\0b", 3), 0) + texels_);
    ASSERT_NE(mesh, nullptr);
    EXPECT_EQ(std::string(mesh->label, 3), std::string("a\0\0", 3));
}

TEST_F(BinReader, FillsWhatTheFileDoesNotHoldWithZeros) {
    const auto mesh = read(bytesOf(Ints{2, 3}) + bytesOf(Floats{1, 2, 3, 4}) + "\x01");
    ASSERT_NE(mesh, nullptr);
    EXPECT_EQ(mesh->numVertices, 2);
    EXPECT_EQ(mesh->numFaces, 3);
    EXPECT_EQ(mesh->vertices[3], 4);
    EXPECT_EQ(mesh->vertices[5], 0);
    EXPECT_EQ(mesh->vertexIndex[8], 0);
}

TEST_F(BinReader, ReadsAnEmptyMesh) {
    for (const std::string& bytes : {bytesOf(Ints{0, 0}), std::string(), bytesOf(Ints{0, 0}) + binLabel("stone", 0)}) {
        const auto mesh = read(bytes);
        ASSERT_NE(mesh, nullptr);
        EXPECT_EQ(mesh->numVertices, 0);
        EXPECT_EQ(mesh->numFaces, 0);
        expectNoTexels(*mesh);
    }
}

TEST_F(BinReader, ReportsAFileThatIsNotThere) {
    CaughtReports reports;
    EXPECT_EQ(ReadBinFile(path_.c_str()), nullptr);
    expectReportBlock(reports.lines(), "bin.cpp", "ERROR: Cannot open " + path_);
}

TEST_F(BinReader, RefusesNegativeCounts) {
    expectDamaged(bytesOf(Ints{-1, 0}));
    expectDamaged(bytesOf(Ints{0, -1}));
    expectDamaged(tetrahedron_ + binLabel("", 0xFF) + bytesOf(Ints{-1}));
}

// A file of 3 bytes used to cost 462 MB.
TEST_F(BinReader, RefusesToPromiseFarMoreThanItHas) {
    // Four times the eight bytes, and 1 MiB.
    constexpr std::int32_t kMostVertices = ((1 << 20) + 32) / 12;
    expectDamaged(bytesOf(Ints{kMostVertices + 1, 0}));
    expectDamaged(bytesOf(Ints{0x7FFFFFFF, 0x7FFFFFFF}));
    expectDamaged(bytesOf(Ints{1 << 29, 1 << 29}));
    const auto mesh = read(bytesOf(Ints{kMostVertices, 0}));
    ASSERT_NE(mesh, nullptr);
    EXPECT_EQ(mesh->vertexSpan().back(), 0);
}

TEST_F(BinReader, MayPromiseFourTimesItsSizeBeyondItsEnd) {
    constexpr std::int32_t kHeld = 1 << 20;
    const std::string bytes = bytesOf(Ints{5 * kHeld, 0}) + std::string(std::size_t{12} * kHeld, '\0');
    const auto mesh = read(bytes);
    ASSERT_NE(mesh, nullptr);
    EXPECT_EQ(mesh->numVertices, 5 * kHeld);
    expectDamaged(bytesOf(Ints{5 * kHeld + (1 << 20) / 12 + 4, 0}) + bytes.substr(8));
}

TEST_F(BinReader, AddsUpWhatTheArraysPromise) {
    expectDamaged(bytesOf(Ints{50000, 50000}));
    // 128 bytes, and a texel index of 48 behind the texels.
    constexpr std::int32_t kMostTexels = ((1 << 20) + 4 * 128 - 48) / 8;
    expectDamaged(tetrahedron_ + binLabel("", 0xFF) + bytesOf(Ints{kMostTexels + 1}));
    EXPECT_NE(read(tetrahedron_ + binLabel("", 0xFF) + bytesOf(Ints{kMostTexels})), nullptr);
}

}  // namespace
}  // namespace talvek::test
