// What a session reads is never written over, by whatever name it is reached. Each of these used to cost the mesh.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>

#include "interface/host_session.h"
#include "support/bitmaps.h"
#include "support/meshes.h"

namespace talvek::test {
namespace {

namespace fs = std::filesystem;

enum class LinkKind : bool { kSymbolic, kHard };

class SessionInputs : public HostSession, public ::testing::WithParamInterface<LinkKind> {
  protected:
    void SetUp() override {
        HostSession::SetUp();
        nameMesh(text_);
        setUp(TALVEK_MODE_MESH_DATA, TALVEK_MODEL_ACID_RAIN, 2);
    }

    /// Lets a name lead to a file of the folder.
    void link(const std::string& name, const std::string& target = "stone.obj") {
        if (GetParam() == LinkKind::kHard) {
            fs::create_hard_link(folder_.file(target), folder_.file(name));
        } else {
            fs::create_symlink(target, folder_.file(name));
        }
    }

    const std::string text_ = objText(*makeSphere(10, 1));
};

#ifndef _WIN32
constexpr LinkKind kLinkKinds[] = {LinkKind::kSymbolic, LinkKind::kHard};
#else
constexpr LinkKind kLinkKinds[] = {LinkKind::kHard};
#endif

TEST_P(SessionInputs, TheMeshUnderTheRunLogsName) {
    link("stone.inf");
    EXPECT_EQ(start(), TALVEK_OK);
    EXPECT_EQ(text("stone.obj"), text_);
    EXPECT_TRUE(exists(folder_.file("stone.obj.obj_w_2.obj")));
}

TEST_P(SessionInputs, TheMeshUnderAFramesName) {
    for (const char* name : {"stone.obj.obj_w_1.obj", "stone.obj.obj_w.obj", "stone.obj.obj_i.obj"}) {
        link(name);
    }
    EXPECT_EQ(start(), TALVEK_OK);
    EXPECT_EQ(text("stone.obj"), text_);
    for (const char* name : {"stone.obj.obj_w_1.obj", "stone.obj.obj_w.obj", "stone.obj.obj_i.obj"}) {
        EXPECT_EQ(text(name), text_) << name;
    }
    EXPECT_NE(text("stone.obj.obj_w_2.obj"), text_);
}

TEST_P(SessionInputs, TheMapAndTheParametersUnderAFramesName) {
    const std::string map = bitmapBytes(plainBitmap(4, 4, kWhite));
    writeFile(folder_.file("stone.bmp"), map);
    ASSERT_EQ(captured(TALVEK_CALL(talvekSaveParams)), TALVEK_OK);
    const std::string parameters = text("stone.cfg");
    link("stone.obj.obj_w_1.obj", "stone.bmp");
    link("stone.obj.obj_w_2.obj", "stone.cfg");
    EXPECT_EQ(start(), TALVEK_OK);
    EXPECT_EQ(readFile(folder_.file("stone.bmp")), map);
    EXPECT_EQ(text("stone.cfg"), parameters);
}

TEST_P(SessionInputs, TheMeshUnderTheParameterFilesName) {
    link("stone.cfg");
    EXPECT_EQ(captured(TALVEK_CALL(talvekSaveParams)), TALVEK_ERROR_RANGE);
    EXPECT_EQ(text("stone.obj"), text_);
}

TEST_P(SessionInputs, AParameterFileMayBeALinkToAnother) {
    writeFile(folder_.file("other.cfg"), "mode = 1;\n");
    link("stone.cfg", "other.cfg");
    EXPECT_EQ(captured(TALVEK_CALL(talvekSaveParams)), TALVEK_OK);
    EXPECT_NE(text("stone.cfg"), "mode = 1;\n");
}

INSTANTIATE_TEST_SUITE_P(ByEveryLink, SessionInputs, ::testing::ValuesIn(kLinkKinds),
                         [](const ::testing::TestParamInfo<LinkKind>& kind) {
                             return kind.param == LinkKind::kHard ? "Hard" : "Symbolic";
                         });

class NamesOfInputs : public HostSession {};

TEST_F(NamesOfInputs, AMeshThatIsCalledAsARunLog) {
    nameMesh("v 0 0 0\n", "results.inf");
    setUp(TALVEK_MODE_MESH_DATA, TALVEK_MODEL_ACID_RAIN);
    EXPECT_EQ(start(), TALVEK_ERROR_MESH);
    EXPECT_EQ(text("results.inf"), "v 0 0 0\n");
}

TEST_F(NamesOfInputs, AMeshThatIsCalledAsAParameterFile) {
    nameMesh("v 0 0 0\n", "stone.cfg");
    setUp(TALVEK_MODE_MESH_DATA, TALVEK_MODEL_ACID_RAIN);
    EXPECT_EQ(captured(TALVEK_CALL(talvekSaveParams)), TALVEK_ERROR_RANGE);
    EXPECT_EQ(text("stone.cfg"), "v 0 0 0\n");
}

TEST_F(NamesOfInputs, WhatAKilledRunHasLeftIsRemovedByTheNext) {
    nameMesh(objText(*makeSphere(10, 0)));
    setUp(TALVEK_MODE_MESH_DATA, TALVEK_MODEL_ACID_RAIN);
    writeFile(folder_.file(".talvek-0123456789.tmp"), "cut");
    EXPECT_EQ(start(), TALVEK_OK);
    EXPECT_FALSE(exists(folder_.file(".talvek-0123456789.tmp")));
}

}  // namespace
}  // namespace talvek::test
