// Whatever a host calls, in whatever order: the library answers, and nothing breaks.
#include <functional>

#include "interface/host_session.h"
#include "support/random_numbers.h"

namespace talvek::test {
namespace {

class AnyOrder : public HostSession {
  protected:
    /// One call with arguments good and bad, chosen by chance.
    void callOne() { numbers_.below(2) == 0 ? runOrSet() : readOrTell(); }

  private:
    void runOrSet() {
        const std::function<void()> calls[] = {
            [] {
                TALVEK_CALL(talvekInit)
                ();
            },
            [] {
                TALVEK_CALL(talvekFree)
                ();
            },
            [] {
                TALVEK_CALL(talvekStart)
                ();
            },
            [] {
                TALVEK_CALL(talvekStop)
                ();
            },
            [] {
                TALVEK_CALL(talvekReadParams)
                ();
            },
            [] {
                TALVEK_CALL(talvekSaveParams)
                ();
            },
            [this] {
                TALVEK_CALL(talvekSetFileName)
                (anyPath());
            },
            [this] {
                TALVEK_CALL(talvekGetFileName)
                (maybe(text_));
            },
            [this] {
                TALVEK_CALL(talvekSetMode)
                (anyInt());
            },
            [this] {
                TALVEK_CALL(talvekSetModel)
                (anyInt());
            },
            [this] {
                TALVEK_CALL(talvekSetNumEpochs)
                (anyInt());
            },
            [this] {
                TALVEK_CALL(talvekSetTimeSpan)
                (anyInt(), anyInt());
            },
            [this] {
                TALVEK_CALL(talvekSetResults)
                (anyInt());
            },
            [this] {
                TALVEK_CALL(talvekSetEpochTimeSpan)
                (anyNumber(), anyNumber());
            },
        };
        calls[numbers_.below(std::size(calls))]();
    }

    void readOrTell() {
        const std::function<void()> calls[] = {
            [this] {
                TALVEK_CALL(talvekGetEpochTimeSpan)
                (anyNumber());
            },
            [this] {
                TALVEK_CALL(talvekSetMaterialParams)
                (maybe(values_));
            },
            [this] {
                TALVEK_CALL(talvekGetMaterialParams)
                (maybe(values_));
            },
            [this] {
                TALVEK_CALL(talvekSetEpochParams)
                (anyNumber(), maybe(values_));
            },
            [this] {
                TALVEK_CALL(talvekGetEpochParams)
                (anyNumber(), maybe(values_));
            },
            [this] {
                TALVEK_CALL(talvekGetFrameFileName)
                (anyNumber(), maybe(text_));
            },
            [this] {
                TALVEK_CALL(talvekGetFrameTime)
                (anyNumber(), maybe(&days_));
            },
            [this] {
                TALVEK_CALL(talvekGetFrameNumTriangles)
                (anyNumber());
            },
            [this] {
                TALVEK_CALL(talvekGetFrameGeometry)
                (anyNumber(), maybe(values_), maybe(values_));
            },
            [this] {
                TALVEK_CALL(talvekSaveFrameGeometryObj)
                (anyPath(), static_cast<std::int32_t>(numbers_.below(3)) - 1, maybe(values_), maybe(values_));
            },
            [this] {
                TALVEK_CALL(talvekResetLogFile)
                (anyPath());
            },
            [this] {
                TALVEK_CALL(talvekAppendLogFile)
                (anyPath(), maybe("%n%s\n"));
            },
        };
        calls[numbers_.below(std::size(calls))]();
    }

    template <typename T>
    T* maybe(T* pointer) {
        return numbers_.below(4) == 0 ? nullptr : pointer;
    }
    std::int32_t anyInt() {
        constexpr std::int32_t kInts[] = {-2147483647 - 1, -1, 0, 1, 2, 3, 3, 2, 1, 4, 5, 4001, 1000001, 2147483647};
        return kInts[numbers_.below(std::size(kInts))];
    }
    std::uint32_t anyNumber() { return static_cast<std::uint32_t>(anyInt()); }
    const char* anyPath() {
        const std::string names[] = {"stone.obj", "plain.obj", "broken.obj", "absent/a.obj", "stone.inf", ""};
        path_ = folder_.file(names[numbers_.below(std::size(names))]);
        return maybe(path_.c_str());
    }

    RandomNumbers numbers_;
    char text_[TALVEK_FRAME_FILE_NAME_SIZE] = {};
    /// Room for the four triangles of the largest mesh here.
    float values_[36] = {0.5F, 1, 2, 3, 4, 5, 6, 7, 8};
    std::uint32_t days_ = 0;
    std::string path_;
};

TEST_F(AnyOrder, OfCallsEndsWell) {
    writeFile(folder_.file("stone.obj"), "v 0 0 0\nv 1 0 0\nv 0 1 0\nv 0 0 1\nf 1 3 2\nf 1 2 4\nf 2 3 4\nf 1 4 3\n");
    writeFile(folder_.file("plain.obj"), kTriangleText);
    writeFile(folder_.file("broken.obj"), "f 1 2 3\n");
    // Without a name a run would leave its log in the working directory.
    TALVEK_CALL(talvekSetFileName)(folder_.file("absent.obj").c_str());
    ::testing::internal::CaptureStdout();
    ::testing::internal::CaptureStderr();
    for (int i = 0; i < 1000; ++i) {
        callOne();
    }
    ::testing::internal::GetCapturedStdout();
    ::testing::internal::GetCapturedStderr();
    resetSession();
    nameMesh(kTriangleText, "after.obj");
    setUp(1, 3);
    EXPECT_EQ(start(), TALVEK_OK);
    EXPECT_EQ(TALVEK_CALL(talvekGetFrameNumTriangles)(1), 1);
}

TEST_F(AnyOrder, NothingButAFreeNeedsNothing) {
    TALVEK_CALL(talvekFree)();
    TALVEK_CALL(talvekFree)();
    EXPECT_EQ(TALVEK_CALL(talvekInit)(), TALVEK_OK);
    TALVEK_CALL(talvekFree)();
    EXPECT_EQ(TALVEK_CALL(talvekGetEpochTimeSpan)(1), 0);
}

TEST_F(AnyOrder, TheCountMayChangeBetweenCreationAndRelease) {
    setUp(1, 3, 4000);
    TALVEK_CALL(talvekSetNumEpochs)(1);
    TALVEK_CALL(talvekFree)();
    TALVEK_CALL(talvekInit)();
    TALVEK_CALL(talvekSetNumEpochs)(4000);
    TALVEK_CALL(talvekFree)();
    EXPECT_EQ(TALVEK_CALL(talvekInit)(), TALVEK_OK);
    EXPECT_EQ(epoch(4000)[0], 365);
}

}  // namespace
}  // namespace talvek::test
