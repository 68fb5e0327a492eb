// Meshes and mineral maps that come through a pipe, whose length nobody knows beforehand.
#ifndef _WIN32
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <thread>

#include "Vexo_Lib/load3d.h"
#include "support/bitmaps.h"
#include "support/mesh_file_writers.h"
#include "support/test_files.h"
#include "weathering/mineral_map.h"

namespace talvek::test {
namespace {

class Pipe : public ::testing::Test {
  protected:
    /// What `read` makes of these bytes when they come through a pipe of this name.
    template <typename Read>
    auto through(const std::string& name, const std::string& bytes, Read read) {
        const std::string path = folder_.file(name);
        EXPECT_EQ(::mkfifo(path.c_str(), 0600), 0);
        std::thread writer([&] { writeFile(path, bytes); });
        auto result = read(path.c_str());
        writer.join();
        std::filesystem::remove(path);
        return result;
    }

    TempFolder folder_;
};

TEST_F(Pipe, GivesTheMeshesThatFilesGive) {
    for (const SmallFile& file : smallMeshFiles()) {
        ::testing::internal::CaptureStderr();
        const auto mesh = through(file.name, file.bytes, LoadMeshFile);
        ::testing::internal::GetCapturedStderr();
        ASSERT_NE(mesh, nullptr) << file.name;
        EXPECT_GT(mesh->numFaces, 0) << file.name;
        EXPECT_EQ(folder_.listing(), "") << "an old SAS mesh is not replaced";
    }
}

TEST_F(Pipe, MayEndBeforeTheTexels) {
    const std::string bin = binBytes(Tetrahedron::kVertices, Tetrahedron::kFaces) + binLabel("stone", 0);
    const auto mesh = through("short.bin", bin + "texels", LoadMeshFile);
    ASSERT_NE(mesh, nullptr);
    EXPECT_EQ(mesh->texels, nullptr);
    EXPECT_EQ(mesh->numTexels, 0);
    EXPECT_STREQ(mesh->label, "");
}

TEST_F(Pipe, GivesMineralMaps) {
    const std::string bytes = bitmapBytes(plainBitmap(5, 3, kGrey));
    const auto map = through("stone.bmp", bytes, readMineralMap);
    ASSERT_NE(map, nullptr);
    EXPECT_EQ(map->pixel(4, 2)[1], 128);
    EXPECT_EQ(through("cut.bmp", bytes.substr(0, bytes.size() - 1), readMineralMap), nullptr);
}

}  // namespace
}  // namespace talvek::test
#endif
