// Reading and writing SAS files.
#include "Vexo_Lib/sas.h"

#include <gtest/gtest.h>

#include "Vexo_Lib/load3d.h"
#include "support/error_reports.h"
#include "support/mesh_file_writers.h"
#include "support/meshes.h"
#include "support/test_files.h"

namespace talvek::test {
namespace {

class Sas : public ::testing::Test {
  protected:
    std::unique_ptr<Object3D> load(const std::string& bytes) {
        writeFile(path_, bytes);
        return LoadSasFile(path_.c_str());
    }

    static void expectTetrahedron(const Object3D& mesh) {
        EXPECT_TRUE(std::ranges::equal(mesh.vertexSpan(), Tetrahedron::kVertices));
        EXPECT_TRUE(std::ranges::equal(mesh.faceSpan(), Tetrahedron::kFaces));
        EXPECT_EQ(Floats(mesh.faceColours.get(), mesh.faceColours.get() + 12), Tetrahedron::kColours);
        EXPECT_EQ(Floats(mesh.faceNormals.get(), mesh.faceNormals.get() + 12), Tetrahedron::kNormals);
        EXPECT_EQ(mesh.flag, 0);
    }

    void expectDamaged(const std::string& bytes) {
        CaughtReports reports;
        EXPECT_EQ(load(bytes), nullptr);
        expectReportBlock(reports.lines(), "sas.cpp", "damaged file " + path_);
        EXPECT_EQ(readFile(path_), bytes);
    }

    std::string written(const Object3D& mesh) {
        EXPECT_TRUE(WriteSasFile(path_.c_str(), mesh));
        return readFile(path_);
    }

    TempFolder folder_;
    std::string path_ = folder_.file("mesh.sas");
    const std::string texels_ = bytesOf(Tetrahedron::kTexels);
};

TEST_F(Sas, ReadsAMeshWithoutTexels) {
    const auto mesh = load(sasTetrahedron(7778));
    ASSERT_NE(mesh, nullptr);
    expectTetrahedron(*mesh);
    EXPECT_EQ(mesh->texels, nullptr);
    EXPECT_EQ(mesh->texelIndex, nullptr);
    EXPECT_EQ(nameOf(*mesh), path_);
}

TEST_F(Sas, ReadsATexelForEachVertex) {
    const auto mesh = load(sasTetrahedron(7779, texels_));
    ASSERT_NE(mesh, nullptr);
    expectTetrahedron(*mesh);
    EXPECT_EQ(mesh->numTexels, 4);
    EXPECT_EQ(Floats(mesh->texels.get(), mesh->texels.get() + 8), Tetrahedron::kTexels);
    EXPECT_EQ(Ints(mesh->texelIndex.get(), mesh->texelIndex.get() + 12), Tetrahedron::kFaces);
    EXPECT_NE(mesh->texelIndex.get(), mesh->vertexIndex.get());
}

TEST_F(Sas, ReadsTexelsWithTheirIndex) {
    const Ints index = {1, 0, 0, 0, 1, 0, 0, 0, 1, 1, 1, 1};
    const auto mesh = load(sasTetrahedron(7780, bytesOf(Ints{2}) + bytesOf(Floats{5, 6, 7, 8}) + bytesOf(index)));
    ASSERT_NE(mesh, nullptr);
    expectTetrahedron(*mesh);
    EXPECT_EQ(mesh->numTexels, 2);
    EXPECT_EQ(mesh->texels[3], 8);
    EXPECT_EQ(Ints(mesh->texelIndex.get(), mesh->texelIndex.get() + 12), index);
}

TEST_F(Sas, IgnoresTheReservedWordAndTheHeaderSize) {
    std::string bytes = sasTetrahedron(7778);
    bytes.replace(12, 8, bytesOf(Ints{-7, 400}));
    const auto mesh = load(bytes);
    ASSERT_NE(mesh, nullptr);
    expectTetrahedron(*mesh);
}

TEST_F(Sas, RefusesOtherVersionsWithoutAReport) {
    CaughtReports reports;
    for (const std::int32_t version : {0, 7776, 7781, -1}) {
        const std::string bytes = sasTetrahedron(version);
        EXPECT_EQ(load(bytes), nullptr);
        EXPECT_EQ(readFile(path_), bytes);
    }
    EXPECT_EQ(load(""), nullptr);
    EXPECT_TRUE(reports.lines().empty());
}

TEST_F(Sas, ReadsAnEmptyMesh) {
    for (const std::int32_t version : {7777, 7778, 7779, 7780}) {
        const auto mesh = load(sasHeader(version, 0, 0) + (version == 7780 ? bytesOf(Ints{0}) : ""));
        ASSERT_NE(mesh, nullptr) << version;
        EXPECT_EQ(mesh->numVertices, 0);
        EXPECT_EQ(mesh->numFaces, 0);
        const auto whole = LoadMeshFile(path_.c_str());
        ASSERT_NE(whole, nullptr);
        EXPECT_EQ(whole->largestCoordinate, 0);
    }
}

TEST_F(Sas, FillsWhatTheFileDoesNotHoldWithZeros) {
    const auto mesh = load(sasTetrahedron(7778).substr(0, 20 + 3 * 4 + 2));
    ASSERT_NE(mesh, nullptr);
    EXPECT_EQ(mesh->numFaces, 4);
    EXPECT_EQ(mesh->vertices[2], 0);
    EXPECT_EQ(mesh->vertices[11], 0);
    EXPECT_EQ(mesh->vertexIndex[11], 0);
    EXPECT_EQ(mesh->faceColours[11], 0);
}

TEST_F(Sas, RefusesCountsThatCannotBeTrue) {
    for (const std::int32_t version : {7777, 7778, 7779, 7780}) {
        expectDamaged(sasHeader(version, -1, 0));
        expectDamaged(sasHeader(version, 0, -1));
        expectDamaged(sasHeader(version, 0x7FFFFFFF, 0x7FFFFFFF));
        expectDamaged(sasHeader(version, 0, 1 << 29));
        // Less than 256 MiB in each array, more in all of them.
        expectDamaged(sasHeader(version, 12 << 20, 0));
    }
    expectDamaged(sasTetrahedron(7780, bytesOf(Ints{-1})));
    expectDamaged(sasTetrahedron(7780, bytesOf(Ints{1 << 30})));
}

TEST_F(Sas, ReportsAFileThatIsNotThere) {
    CaughtReports reports;
    EXPECT_EQ(LoadSasFile(path_.c_str()), nullptr);
    expectReportBlock(reports.lines(), "sas.cpp", "cannot open " + path_);
    CaughtReports legacyReports;
    EXPECT_EQ(ReadLegacySasFile(path_.c_str()), nullptr);
    expectReportBlock(legacyReports.lines(), "sas.cpp", "Cannot open " + path_);
}

TEST_F(Sas, TheLegacyReaderReadsItsVersionAloneAndLeavesTheFile) {
    writeFile(path_, legacySasTetrahedron());
    const auto mesh = ReadLegacySasFile(path_.c_str());
    ASSERT_NE(mesh, nullptr);
    expectTetrahedron(*mesh);
    EXPECT_EQ(nameOf(*mesh), path_);
    EXPECT_EQ(readFile(path_), legacySasTetrahedron());
    CaughtReports reports;
    writeFile(path_, sasTetrahedron(7778));
    EXPECT_EQ(ReadLegacySasFile(path_.c_str()), nullptr);
    EXPECT_TRUE(reports.lines().empty());
}

TEST_F(Sas, WritesWhatItReads) {
    const std::string indexed = bytesOf(Ints{4}) + texels_ + bytesOf(Tetrahedron::kFaces);
    const auto plain = load(sasTetrahedron(7778));
    EXPECT_EQ(written(*plain), sasTetrahedron(7778));
    const auto withIndex = load(sasTetrahedron(7780, indexed));
    EXPECT_EQ(written(*withIndex), sasTetrahedron(7780, indexed));
}

TEST_F(Sas, WritesATexelForEachVertexWhereThereIsNoIndex) {
    auto mesh = load(sasTetrahedron(7779, texels_));
    mesh->texelIndex.reset();
    mesh->numTexels = 4;
    EXPECT_EQ(written(*mesh), sasTetrahedron(7779, texels_));
    // The version always has as many as there are vertices.
    mesh->texels = copyArray(Tetrahedron::kTexels.data(), 8);
    mesh->texels[4] = 7;
    mesh->numTexels = 2;
    EXPECT_EQ(written(*mesh), sasTetrahedron(7779, texels_.substr(0, 16) + std::string(16, '\0')));
}

TEST_F(Sas, WritesATexelIndexEvenWithoutTexels) {
    auto mesh = load(sasTetrahedron(7778));
    mesh->texels = makeArray<float>(0);
    mesh->texelIndex = copyArray(Tetrahedron::kFaces.data(), 12);
    EXPECT_EQ(written(*mesh), sasTetrahedron(7780, bytesOf(Ints{0}) + bytesOf(Tetrahedron::kFaces)));
}

TEST_F(Sas, WritesZerosForArraysThatAMeshDoesNotHave) {
    const auto mesh = makeMesh(Tetrahedron::kVertices, Tetrahedron::kFaces);
    const std::string bytes = written(*mesh);
    EXPECT_EQ(bytes, sasHeader(7778, 4, 4) + bytesOf(Tetrahedron::kVertices) + bytesOf(Tetrahedron::kFaces) +
                         std::string(2 * 12 * 4, '\0'));
}

TEST_F(Sas, WritesMoreThanABufferful) {
    auto mesh = makePlane(150);
    mesh->updateNormals(true);
    const std::string bytes = written(*mesh);
    EXPECT_EQ(bytes.size(), 20U + 12U * 151 * 151 + 36U * 2 * 150 * 150);
    const auto again = load(bytes);
    ASSERT_NE(again, nullptr);
    EXPECT_TRUE(std::ranges::equal(again->vertexSpan(), mesh->vertexSpan()));
    EXPECT_TRUE(std::ranges::equal(again->faceSpan(), mesh->faceSpan()));
}

TEST_F(Sas, ReportsAFileThatCannotBeCreated) {
    const auto mesh = makeCube(1);
    const std::string path = folder_.file("absent/mesh.sas");
    CaughtReports reports;
    EXPECT_FALSE(WriteSasFile(path.c_str(), *mesh));
    expectReportBlock(reports.lines(), "sas.cpp", "Cannot create " + path);
}

TEST_F(Sas, ADamagedFileIsNotReadAsALegacyOne) {
    writeFile(path_, sasHeader(7777, -1, 4));
    CaughtReports reports;
    EXPECT_EQ(ReadLegacySasFile(path_.c_str()), nullptr);
    expectReportBlock(reports.lines(), "sas.cpp", "damaged file " + path_);
}

}  // namespace
}  // namespace talvek::test
