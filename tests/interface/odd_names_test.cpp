// Names of files that look like something else or are as long as names may be.
#include "interface/host_session.h"
#include "support/guarded_array.h"
#include "support/meshes.h"

namespace talvek::test {
namespace {

/// A text at the very end of what may be read.
class GuardedText {
  public:
    explicit GuardedText(std::string_view text) : bytes_(text.size() + 1, 0) {
        text.copy(bytes_.data(), text.size());
        bytes_[text.size()] = '\0';
    }
    const char* get() { return bytes_.data(); }

  private:
    GuardedArray<char> bytes_;
};

class OddNames : public HostSession {
  protected:
    /// Does everything that a file's name is used for, and expects nothing but files of that name.
    void expectToWork(const std::string& stem) {
        const std::string mesh = stem + ".obj";
        nameMesh(objText(*makeSphere(10, 0)), mesh);
        GuardedText name(folder_.file(mesh));
        ASSERT_EQ(TALVEK_CALL(talvekSetFileName)(name.get()), TALVEK_OK) << stem;
        setUp(TALVEK_MODE_MESH_DATA, TALVEK_MODEL_ACID_RAIN);
        EXPECT_EQ(start(), TALVEK_OK) << stem;
        EXPECT_EQ(captured(TALVEK_CALL(talvekSaveParams)), TALVEK_OK) << stem;
        EXPECT_EQ(captured(TALVEK_CALL(talvekReadParams)), TALVEK_OK) << stem;
        EXPECT_EQ(TALVEK_CALL(talvekGetFrameNumTriangles)(1), 20) << stem;
        GuardedText log(folder_.file(stem + ".log"));
        GuardedText line(stem + "\n");
        EXPECT_EQ(captured([&] { return TALVEK_CALL(talvekAppendLogFile)(log.get(), line.get()); }), TALVEK_OK) << stem;
        EXPECT_EQ(text(stem + ".log"), stem + "\n");
        EXPECT_EQ(folder_.listing(), stem + ".cfg " + stem + ".inf " + stem + ".log " + mesh + ' ' + mesh +
                                         ".obj_i.obj " + mesh + ".obj_w.obj " + mesh + ".obj_w_1.obj");
        EXPECT_NE(text(stem + ".inf").find("File " + folder_.file(mesh) + " processed."), std::string::npos) << stem;
        for (const auto& entry : std::filesystem::directory_iterator(folder_.path())) {
            std::filesystem::remove(entry.path());
        }
    }
};

TEST_F(OddNames, ThatLookLikeFormatsAreNames) {
    for (const char* stem : {"%n", "%s%n%d", "50% of it", "%5.2f", "%"}) {
        expectToWork(stem);
    }
}

TEST_F(OddNames, MayHaveBlanksBracketsAndManyDots) {
    for (const char* stem : {"a stone", " leading", "[x]{y}(z)", "a.b.c", "-o", "stone;epcs=3,'&'"}) {
        expectToWork(stem);
    }
}

TEST_F(OddNames, OfTheLongestKindFillTheirBuffersExactly) {
    const std::string longest = std::string(1019, 'n') + ".obj";
    GuardedText name(longest);
    ASSERT_EQ(TALVEK_CALL(talvekSetFileName)(name.get()), TALVEK_OK);
    GuardedArray<char> out(TALVEK_FILE_NAME_SIZE);
    ASSERT_EQ(TALVEK_CALL(talvekGetFileName)(out.data()), TALVEK_OK);
    EXPECT_EQ(out.data(), longest);
    ASSERT_EQ(TALVEK_CALL(talvekSetNumEpochs)(TALVEK_MAX_EPOCHS), TALVEK_OK);
    GuardedArray<char> frame(TALVEK_FRAME_FILE_NAME_SIZE);
    ASSERT_EQ(TALVEK_CALL(talvekGetFrameFileName)(TALVEK_MAX_EPOCHS, frame.data()), TALVEK_OK);
    EXPECT_EQ(frame.data(), longest + ".obj_w_4000.obj");
    EXPECT_TRUE(out.isFrontIntact());
    EXPECT_TRUE(frame.isFrontIntact());
}

TEST_F(OddNames, NeedNoMoreThanOneNumberForATime) {
    setUp(TALVEK_MODE_MESH_DATA, TALVEK_MODEL_ACID_RAIN, 2, 30);
    GuardedArray<std::uint32_t> days(1);
    ASSERT_EQ(TALVEK_CALL(talvekGetFrameTime)(2, days.data()), TALVEK_OK);
    EXPECT_EQ(days[0], 60);
    EXPECT_TRUE(days.isFrontIntact());
}

#ifndef _WIN32
TEST_F(OddNames, OfAnyScriptAndOfAnyBytesAreNames) {
    for (const char* stem : {"\u015f \u77f3", "caf\xe9", "line\nend", "tab\tand \"quotes\"", "back\\slash"}) {
        expectToWork(stem);
    }
}

TEST_F(OddNames, OfTheLongestKindCanBeRunAndRead) {
    writeFile(folder_.file("stone.obj"), objText(*makeSphere(10, 0)));
    std::string name = folder_.path() + "/";
    const std::size_t ending = std::string_view("/stone.obj").size();
    while (name.size() + 2 + ending <= TALVEK_FILE_NAME_SIZE - 1) {
        name += "./";
    }
    name.append(TALVEK_FILE_NAME_SIZE - name.size() - ending, '/').append("stone.obj");
    ASSERT_EQ(name.size(), TALVEK_FILE_NAME_SIZE - 1);
    ASSERT_EQ(TALVEK_CALL(talvekSetFileName)(name.c_str()), TALVEK_OK);
    setUp(TALVEK_MODE_MESH_DATA, TALVEK_MODEL_ACID_RAIN);
    EXPECT_EQ(start(), TALVEK_OK);
    EXPECT_EQ(captured(TALVEK_CALL(talvekSaveParams)), TALVEK_OK);
    EXPECT_EQ(captured(TALVEK_CALL(talvekReadParams)), TALVEK_OK);
    EXPECT_EQ(TALVEK_CALL(talvekGetFrameNumTriangles)(1), 20);
    EXPECT_EQ(folder_.listing(),
              "stone.cfg stone.inf stone.obj stone.obj.obj_i.obj stone.obj.obj_w.obj stone.obj.obj_w_1.obj");
}
#endif

}  // namespace
}  // namespace talvek::test
