// Folders that cannot be written to, have no room, or go away under a run.
#ifndef _WIN32
#include <sys/stat.h>

#include <algorithm>
#include <chrono>
#include <system_error>
#include <thread>

#include "interface/host_session.h"
#include "support/meshes.h"
#include "support/restriction.h"

namespace talvek::test {
namespace {

class OddFolders : public HostSession {
  protected:
    void SetUp() override {
        HostSession::SetUp();
        nameMesh(objText(*makeSphere(10, 0)));
    }

    /// In a child process, whose output nobody reads.
    static std::int32_t startSilently() {
        ::testing::internal::CaptureStdout();
        ::testing::internal::CaptureStderr();
        const std::int32_t result = TALVEK_CALL(talvekStart)();
        ::testing::internal::GetCapturedStdout();
        ::testing::internal::GetCapturedStderr();
        return result;
    }
};

TEST_F(OddFolders, ThatAreReadOnlyGetNoFiles) {
    setUp(TALVEK_MODE_MESH_DATA, TALVEK_MODEL_ACID_RAIN);
    writeFile(folder_.file("stone.cfg"), "old");
    ASSERT_EQ(::chmod(folder_.path().c_str(), 0555), 0);
    EXPECT_TRUE(holdsUnder(Restriction::kNoPrivileges, [] {
        return startSilently() == TALVEK_OK && TALVEK_CALL(talvekGetStatus)() == TALVEK_STATUS_FINISHED &&
               TALVEK_CALL(talvekGetFrameNumTriangles)(1) == 0 && TALVEK_CALL(talvekSaveParams)() == TALVEK_ERROR_RANGE;
    }));
    ASSERT_EQ(::chmod(folder_.path().c_str(), 0755), 0);
    EXPECT_EQ(folder_.listing(), "stone.cfg stone.obj");
    EXPECT_EQ(text("stone.cfg"), "old");
}

TEST_F(OddFolders, WithoutRoomForAFrameKeepTheOldOne) {
    nameMesh(objText(*makeSphere(10, 1)));
    setUp(TALVEK_MODE_MESH_DATA, TALVEK_MODEL_ACID_RAIN, 2);
    writeFile(mesh_ + ".obj_w_1.obj", "old");
    EXPECT_TRUE(holdsUnder(Restriction::kFilesUpTo1000Bytes, [] {
        return startSilently() == TALVEK_OK && TALVEK_CALL(talvekGetStatus)() == TALVEK_STATUS_FINISHED;
    }));
    EXPECT_EQ(folder_.listing(), "stone.inf stone.obj stone.obj.obj_w_1.obj");
    EXPECT_EQ(text("stone.obj.obj_w_1.obj"), "old");
    EXPECT_EQ(start(), TALVEK_OK);
    EXPECT_EQ(TALVEK_CALL(talvekGetFrameNumTriangles)(1), 80);
}

TEST_F(OddFolders, OnAFullDeviceEndNothing) {
    setUp(TALVEK_MODE_MESH_DATA, TALVEK_MODEL_ACID_RAIN);
    for (const char* name : {"stone.inf", "stone.cfg", "stone.obj.obj_w_1.obj"}) {
        std::filesystem::create_symlink("/dev/full", folder_.file(name));
    }
    EXPECT_EQ(start(), TALVEK_OK);
    EXPECT_EQ(captured(TALVEK_CALL(talvekSaveParams)), TALVEK_ERROR_RANGE);
    EXPECT_TRUE(exists(mesh_ + ".obj_w.obj"));
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/full"));
    const Floats triangle(9, 1);
    EXPECT_EQ(TALVEK_CALL(talvekSaveFrameGeometryObj)("/dev/full", 1, triangle.data(), nullptr), TALVEK_OK)
        << "is not reported";
    EXPECT_EQ(TALVEK_CALL(talvekResetLogFile)("/dev/full"), TALVEK_OK) << "writes nothing";
}

TEST_F(OddFolders, ThatVanishDuringARunEndNothingButTheFrames) {
    const std::string here = folder_.file("here");
    const std::string away = folder_.file("away");
    ASSERT_TRUE(std::filesystem::create_directory(here));
    const std::string mesh = here + "/stone.obj";
    writeFile(mesh, objText(*makeSphere(10, 0)));
    ASSERT_EQ(TALVEK_CALL(talvekSetFileName)(mesh.c_str()), TALVEK_OK);
    setUp(TALVEK_MODE_MESH_DATA, TALVEK_MODEL_ACID_RAIN, 1000);
    constexpr std::ptrdiff_t kLinesOfAFrame = 5 + 2 * 12 + 1 + 20;
    std::thread mover([&] {
        while (!std::filesystem::exists(mesh + ".obj_w_3.obj")) {
            std::this_thread::sleep_for(std::chrono::microseconds(100));
        }
        std::filesystem::rename(here, away);
    });
    EXPECT_EQ(start(), TALVEK_OK);
    mover.join();
    EXPECT_EQ(TALVEK_CALL(talvekGetStatus)(), TALVEK_STATUS_FINISHED);
    EXPECT_FALSE(exists(here));
    for (const auto& entry : std::filesystem::directory_iterator(away)) {
        if (entry.path().string().find(".obj_w") != std::string::npos) {
            EXPECT_EQ(std::ranges::count(readText(entry.path().string()), '\n'), kLinesOfAFrame) << entry.path();
        }
    }
}

TEST_F(OddFolders, AFolderThatVanishesEndsNothingButTheFrames) {
    const std::string gone = folder_.file("gone");
    ASSERT_TRUE(std::filesystem::create_directory(gone));
    writeFile(gone + "/stone.obj", objText(*makeSphere(10, 0)));
    ASSERT_EQ(TALVEK_CALL(talvekSetFileName)((gone + "/stone.obj").c_str()), TALVEK_OK);
    std::filesystem::remove_all(gone);
    setUp(TALVEK_MODE_MESH_DATA, TALVEK_MODEL_ACID_RAIN);
    EXPECT_EQ(start(), TALVEK_ERROR_MESH);
    EXPECT_EQ(captured(TALVEK_CALL(talvekSaveParams)), TALVEK_ERROR_RANGE);
    EXPECT_EQ(folder_.listing(), "stone.obj");
}

TEST_F(OddFolders, AParentThatCannotBeReadDoesNotMatter) {
    const std::string parent = folder_.file("parent");
    ASSERT_TRUE(std::filesystem::create_directories(parent + "/inside"));
    writeFile(parent + "/inside/stone.obj", objText(*makeSphere(10, 0)));
    ASSERT_EQ(::chmod(parent.c_str(), 0111), 0);
    EXPECT_TRUE(holdsUnder(Restriction::kNoPrivileges, [this, &parent] {
        std::filesystem::current_path(parent + "/inside");
        std::error_code isRefused;
        std::filesystem::directory_iterator(parent, isRefused);
        TALVEK_CALL(talvekSetFileName)("stone.obj");
        setUp(TALVEK_MODE_MESH_DATA, TALVEK_MODEL_ACID_RAIN);
        return isRefused && start() == TALVEK_OK && exists("stone.obj.obj_w_1.obj");
    }));
    ASSERT_EQ(::chmod(parent.c_str(), 0755), 0);
}

}  // namespace
}  // namespace talvek::test
#endif
