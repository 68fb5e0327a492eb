// From a file's name to a finished mesh, and the report of those that fail.
#include "Vexo_Lib/load3d.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>

#include "Vexo_Lib/error_report.h"
#include "support/error_reports.h"
#include "support/mesh_file_writers.h"
#include "support/meshes.h"
#include "support/test_files.h"

namespace talvek::test {
namespace {

constexpr std::string_view kTriangle = "v 0 -3 0\nv 2 0 0\nv 0 1 0.5\nf 1 2 3\n";

class Load : public ::testing::Test {
  protected:
    std::unique_ptr<Object3D> load(std::string_view name, std::string_view text = kTriangle) {
        path_ = folder_.file(name);
        writeFile(path_, text);
        ::testing::internal::CaptureStderr();
        std::unique_ptr<Object3D> mesh = LoadMeshFile(path_.c_str());
        report_ = ::testing::internal::GetCapturedStderr();
        return mesh;
    }

    TempFolder folder_;
    std::string path_;
    std::string report_;
};

TEST_F(Load, FinishesTheMesh) {
    const auto mesh = load("a.obj");
    ASSERT_NE(mesh, nullptr);
    EXPECT_NE(mesh->vertexNormals, nullptr);
    EXPECT_NE(mesh->faceNormals, nullptr);
    EXPECT_GT(mesh->meanEdgeLength, 0);
    EXPECT_EQ(nameOf(*mesh), path_);
    EXPECT_EQ(mesh->largestCoordinate, 3);
    EXPECT_EQ(report_, "");
}

TEST_F(Load, ABareMeshIsTheSameMeshUnfinished) {
    const auto whole = load("a.obj", "v 0 -3 0\nv 2 0 0\nv 0 1 0.5\nvt 0.25 0.5\nf 1/1 2/1 3/1\n");
    const std::unique_ptr<Object3D> bare = loadBareMesh(path_.c_str());
    ASSERT_NE(bare, nullptr);
    EXPECT_TRUE(std::ranges::equal(bare->vertexSpan(), whole->vertexSpan()));
    EXPECT_TRUE(std::ranges::equal(bare->faceSpan(), whole->faceSpan()));
    EXPECT_EQ(bare->numTexels, 1);
    EXPECT_EQ(bare->texels[1], 0.5F);
    EXPECT_EQ(bare->texelIndex[2], 0);
    EXPECT_EQ(bare->vertexNormals, nullptr);
    EXPECT_EQ(bare->faceNormals, nullptr);
    EXPECT_EQ(bare->faceColours, nullptr);
    EXPECT_EQ(bare->meanEdgeLength, 0);
}

// An array that can grow knows the size of its block.
TEST_F(Load, ArraysAreAsLongAsTheCountsSay) {
    const auto expectRoom = [](const auto& array, std::int64_t count) {
        if (array != nullptr) {
            EXPECT_EQ(array.get_deleter().room, static_cast<std::size_t>(4 * count));
        }
    };
    for (const SmallFile& file : smallMeshFiles()) {
        SCOPED_TRACE(file.name);
        const auto mesh = load(file.name, file.bytes);
        ASSERT_NE(mesh, nullptr);
        expectRoom(mesh->vertexIndex, 3 * mesh->numFaces);
        expectRoom(mesh->texels, 2 * mesh->numTexels);
        expectRoom(mesh->texelIndex, 3 * mesh->numFaces);
        expectRoom(mesh->faceNormals, 3 * mesh->numFaces);
        expectRoom(mesh->faceColours, 3 * mesh->numFaces);
        expectRoom(mesh->vertexColours, 3 * mesh->numVertices);
    }
}

TEST_F(Load, ABareMeshDropsWhatItsFileHoldsBesides) {
    ASSERT_NE(load("a.sas", sasTetrahedron(7778)), nullptr);
    const std::unique_ptr<Object3D> bareSas = loadBareMesh(path_.c_str());
    ASSERT_NE(bareSas, nullptr);
    EXPECT_EQ(bareSas->faceNormals, nullptr);
    EXPECT_EQ(bareSas->faceColours, nullptr);
    ASSERT_NE(load("a.wrl", "Color { color [ 1 0 0, 0 1 0, 0 0 1, 1 1 1 ] }\n" + wrlTetrahedron()), nullptr);
    const CaughtReports reports;
    const std::unique_ptr<Object3D> bareWrl = loadBareMesh(path_.c_str());
    ASSERT_NE(bareWrl, nullptr);
    EXPECT_EQ(bareWrl->vertexColours, nullptr);
}

TEST_F(Load, ABareMeshIsRefusedAsAnyOther) {
    EXPECT_EQ(load("a.obj", "v 0 -3 0\nv 2 0 0\nf 1 2 3\n"), nullptr);
    const std::string reportOfWhole = report_;
    ::testing::internal::CaptureStderr();
    EXPECT_EQ(loadBareMesh(path_.c_str()), nullptr);
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), reportOfWhole);
    EXPECT_EQ(loadBareMesh(folder_.file("absent.obj").c_str()), nullptr);
    EXPECT_EQ(loadBareMesh(folder_.file("a.txt").c_str()), nullptr);
}

TEST_F(Load, KnowsExtensionsInLowerOrUpperCase) {
    EXPECT_NE(load("model.obj"), nullptr);
    EXPECT_NE(load("model.OBJ"), nullptr);
}

TEST_F(Load, KnowsNoOtherExtension) {
    for (const char* name : {"model.Obj", "model.oBJ", "model.objx", "model.ob", "model.obj~", "model", "model.txt"}) {
        EXPECT_EQ(load(name), nullptr) << name;
        EXPECT_EQ(report_, "") << name;
    }
}

TEST_F(Load, OnlyTheLastDotCounts) {
    EXPECT_NE(load("archive.tar.obj"), nullptr);
    EXPECT_EQ(load("archive.obj.tar"), nullptr);
}

TEST_F(Load, TheLastDotMayStandInAFolder) {
    std::filesystem::create_directory(folder_.file("dir.obj"));
    EXPECT_EQ(load("dir.obj/mesh"), nullptr);
    EXPECT_EQ(LoadMeshFile("C:\\my.dir\\model"), nullptr);
    EXPECT_EQ(LoadMeshFile("."), nullptr);
    EXPECT_EQ(LoadMeshFile("model."), nullptr);
    EXPECT_EQ(LoadMeshFile(""), nullptr);
}

TEST_F(Load, AFileThatIsNotThereIsNoMesh) {
    ::testing::internal::CaptureStderr();
    EXPECT_EQ(LoadMeshFile(folder_.file("absent.obj").c_str()), nullptr);
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
}

TEST_F(Load, AnEmptyFileIsAnEmptyMesh) {
    const auto mesh = load("a.obj", "");
    ASSERT_NE(mesh, nullptr);
    EXPECT_EQ(mesh->numVertices, 0);
    EXPECT_EQ(mesh->largestCoordinate, 0);
    EXPECT_NE(mesh->vertexNormals, nullptr);
}

TEST_F(Load, RefusesFacesOfVerticesThatAreNotThere) {
    for (const char* face : {"f 1 2 4", "f 0 1 2", "f -1 -2 -3", "f 1 2 2147483647", "f 1 2 x", "f 99999999999 1 1"}) {
        EXPECT_EQ(load("a.obj", std::string(kTriangle) + face + "\n"), nullptr) << face;
        const std::size_t last = report_.find("face index out of range in " + path_ + "\n");
        EXPECT_NE(last, std::string::npos) << report_;
    }
}

TEST_F(Load, RefusesFacesWithoutAnyVertex) {
    EXPECT_EQ(load("a.obj", "f 1 1 1\n"), nullptr);
}

TEST_F(Load, ReportsInThreeLines) {
    load("a.obj", "f 1 1 1\n");
    const std::string prefix = "(TIME) load3d.cpp:LINE >> ";
    EXPECT_EQ(comparableReport(report_), prefix + "ERROR INFORMATION BELOW\n" + prefix +
                                             "Current dir: " + std::filesystem::current_path().string() + "\n" +
                                             prefix + "face index out of range in " + path_ + "\n");
}

TEST_F(Load, TexelsThatAreNotThereAreTheConsumersConcern) {
    const auto mesh = load("a.obj", "v 0 0 0\nf 1/5 1/-3 1/2147483647\n");
    ASSERT_NE(mesh, nullptr);
    EXPECT_EQ(mesh->texelIndex[0], 4);
    EXPECT_EQ(mesh->texelIndex[1], -4);
}

#ifndef _WIN32
TEST_F(Load, ALongPathFillsTheNameWithoutATerminator) {
    const std::string folder = folder_.path() + "/";
    for (const std::size_t length : {255U, 256U, 257U, 300U}) {
        std::string name(length - folder.size(), 'n');
        // No single name may be longer than 255 characters.
        name[name.size() / 2] = '/';
        std::filesystem::create_directories(folder + name.substr(0, name.size() / 2));
        const auto mesh = load(name.substr(0, name.size() - 4) + ".obj");
        ASSERT_NE(mesh, nullptr) << length;
        EXPECT_EQ(path_.size(), length);
        EXPECT_EQ(nameOf(*mesh), path_.substr(0, 256));
        EXPECT_EQ(mesh->name[255] == '\0', length == 255);
    }
}
#endif

TEST_F(Load, AShortNameIsFollowedByNothing) {
    const auto mesh = load("a.obj");
    for (std::size_t i = path_.size(); i < Object3D::kTextSize; ++i) {
        ASSERT_EQ(mesh->name[i], '\0');
    }
}

TEST(ErrorReport, SourceNamesAreCutAtEitherSeparator) {
    EXPECT_EQ(SourceBaseName("a/b\\c/d.src"), "d.src");
    EXPECT_EQ(SourceBaseName("a/b\\d.src"), "d.src");
    EXPECT_EQ(SourceBaseName("file.src"), "file.src");
    EXPECT_EQ(SourceBaseName("folder/"), "");
    EXPECT_EQ(SourceBaseName(""), "");
    EXPECT_EQ(SourceBaseName(nullptr), "");
}

TEST(ErrorReport, TheTimeStandsInParentheses) {
    const std::string stamp = ErrorTimeStamp();
    EXPECT_TRUE(stamp.starts_with('(') && stamp.ends_with(')') && isTimeOfDay(stamp.substr(1, stamp.size() - 2)))
        << stamp;
}

TEST(ErrorReport, TheWorkingDirectoryIsTold) {
    EXPECT_EQ(CurrentDirectory(), std::filesystem::current_path().string());
}

#ifndef _WIN32
TEST(ErrorReport, AWorkingDirectoryHasANameOfUpTo1023Characters) {
    const std::filesystem::path before = std::filesystem::current_path();
    const TempFolder folder;
    for (const std::size_t length : {1023U, 1024U}) {
        std::string path = std::filesystem::canonical(folder.path());
        while (path.size() < length) {
            const std::size_t missing = length - path.size() - 1;
            path += "/" + std::string(missing > 200 ? 100 : missing, 'd');
        }
        std::filesystem::create_directories(path);
        std::filesystem::current_path(path);
        EXPECT_EQ(CurrentDirectory(), length < 1024 ? path : "");
    }
    std::filesystem::current_path(before);
}

TEST(ErrorReport, AWorkingDirectoryThatIsGoneHasNoName) {
    const std::filesystem::path before = std::filesystem::current_path();
    const TempFolder folder;
    std::filesystem::create_directory(folder.file("gone"));
    std::filesystem::current_path(folder.file("gone"));
    std::filesystem::remove(folder.file("gone"));
    EXPECT_EQ(CurrentDirectory(), "");
    std::filesystem::current_path(before);
}
#endif

TEST(ErrorReport, GoesToStandardErrorAlone) {
    ::testing::internal::CaptureStdout();
    ::testing::internal::CaptureStderr();
    reportError({"x/y/reader.cpp", 42}, "Cannot open ", "a%s.bin");
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "");
    const std::string prefix = "(TIME) reader.cpp:LINE >> ";
    EXPECT_EQ(comparableReport(::testing::internal::GetCapturedStderr()),
              prefix + "ERROR INFORMATION BELOW\n" + prefix + "Current dir: " + CurrentDirectory() + "\n" + prefix +
                  "Cannot open a%s.bin\n");
}

}  // namespace
}  // namespace talvek::test
