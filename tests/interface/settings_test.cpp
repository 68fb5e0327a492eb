// The calls that touch nothing but the session: ranges, fallbacks, names, status.
#include <limits>

#include "interface/host_session.h"

namespace talvek::test {
namespace {

constexpr std::int32_t kSmallest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kLargest = std::numeric_limits<std::int32_t>::max();

class Settings : public HostSession {};

TEST_F(Settings, TellTheirLimits) {
    EXPECT_EQ(TALVEK_CALL(talvekGetMaxMode)(), 3);
    EXPECT_EQ(TALVEK_CALL(talvekGetMaxModel)(), 3);
    EXPECT_EQ(TALVEK_CALL(talvekGetMaxEpochs)(), 4000);
    EXPECT_EQ(TALVEK_CALL(talvekGetMaxEpochDays)(), 1000000);
}

TEST_F(Settings, TheModeFallsBackToOne) {
    for (std::int32_t mode = 0; mode <= 3; ++mode) {
        EXPECT_EQ(TALVEK_CALL(talvekSetMode)(mode), TALVEK_OK);
        EXPECT_EQ(TALVEK_CALL(talvekGetMode)(), mode);
    }
    for (const std::int32_t mode : {7, 4, -1, kSmallest, kLargest}) {
        TALVEK_CALL(talvekSetMode)(2);
        EXPECT_EQ(TALVEK_CALL(talvekSetMode)(mode), TALVEK_ERROR_RANGE);
        EXPECT_EQ(TALVEK_CALL(talvekGetMode)(), 1);
    }
}

TEST_F(Settings, TheModelFallsBackToThree) {
    for (std::int32_t model = 0; model <= 3; ++model) {
        EXPECT_EQ(TALVEK_CALL(talvekSetModel)(model), TALVEK_OK);
        EXPECT_EQ(TALVEK_CALL(talvekGetModel)(), model);
    }
    for (const std::int32_t model : {-1, 4, kSmallest, kLargest}) {
        TALVEK_CALL(talvekSetModel)(1);
        EXPECT_EQ(TALVEK_CALL(talvekSetModel)(model), TALVEK_ERROR_RANGE);
        EXPECT_EQ(TALVEK_CALL(talvekGetModel)(), 3);
    }
}

TEST_F(Settings, TheNumberOfEpochsStaysOnBadInput) {
    EXPECT_EQ(TALVEK_CALL(talvekSetNumEpochs)(4000), TALVEK_OK);
    for (const std::int32_t n : {0, -1, 4001, kSmallest, kLargest}) {
        EXPECT_EQ(TALVEK_CALL(talvekSetNumEpochs)(n), TALVEK_ERROR_RANGE);
        EXPECT_EQ(TALVEK_CALL(talvekGetNumEpochs)(), 4000);
        EXPECT_EQ(TALVEK_CALL(talvekGetNumFrames)(), 4000);
    }
    EXPECT_EQ(TALVEK_CALL(talvekSetNumEpochs)(1), TALVEK_OK);
    EXPECT_EQ(TALVEK_CALL(talvekGetNumFrames)(), 1);
}

TEST_F(Settings, TheTimeSpanFallsBackPartByPart) {
    const auto expectSpan = [](std::int32_t epochs, std::int32_t days) {
        EXPECT_EQ(TALVEK_CALL(talvekGetNumEpochs)(), epochs);
        TALVEK_CALL(talvekFree)();
        TALVEK_CALL(talvekInit)();
        EXPECT_EQ(TALVEK_CALL(talvekGetEpochTimeSpan)(static_cast<std::uint32_t>(epochs)), days);
    };
    EXPECT_EQ(TALVEK_CALL(talvekSetTimeSpan)(0, 0), TALVEK_ERROR_RANGE);
    expectSpan(1, 365);
    EXPECT_EQ(TALVEK_CALL(talvekSetTimeSpan)(10, 2000000), TALVEK_ERROR_RANGE);
    expectSpan(10, 365);
    EXPECT_EQ(TALVEK_CALL(talvekSetTimeSpan)(4001, 20), TALVEK_ERROR_RANGE);
    expectSpan(1, 20);
    EXPECT_EQ(TALVEK_CALL(talvekSetTimeSpan)(4000, 1000000), TALVEK_OK);
    expectSpan(4000, 1000000);
    EXPECT_EQ(TALVEK_CALL(talvekSetTimeSpan)(kSmallest, kSmallest), TALVEK_ERROR_RANGE);
    expectSpan(1, 365);
}

TEST_F(Settings, TheResultsFlagIsOneOrNot) {
    EXPECT_EQ(TALVEK_CALL(talvekSetResults)(0), TALVEK_OK);
    EXPECT_EQ(TALVEK_CALL(talvekSetResults)(1), TALVEK_OK);
    for (const std::int32_t flag : {2, -1, kSmallest, kLargest}) {
        EXPECT_EQ(TALVEK_CALL(talvekSetResults)(flag), TALVEK_ERROR_RANGE);
    }
}

TEST_F(Settings, ABadResultsFlagClearsTheFlag) {
    nameMesh(kTriangleText);
    setUp(1, 3);
    ASSERT_EQ(TALVEK_CALL(talvekSetResults)(1), TALVEK_OK);
    ASSERT_EQ(TALVEK_CALL(talvekSetResults)(2), TALVEK_ERROR_RANGE);
    ASSERT_EQ(start(), TALVEK_OK);
    EXPECT_FALSE(exists(folder_.file("stone.obj.obj_w_0.obj")));
}

TEST_F(Settings, StatusFollowsInitAndStop) {
    nameMesh(kTriangleText);
    setUp(1, 3);
    EXPECT_EQ(TALVEK_CALL(talvekGetStatus)(), TALVEK_STATUS_READY);
    ASSERT_EQ(start(), TALVEK_OK);
    EXPECT_EQ(TALVEK_CALL(talvekGetStatus)(), TALVEK_STATUS_FINISHED);
    TALVEK_CALL(talvekFree)();
    EXPECT_EQ(TALVEK_CALL(talvekGetStatus)(), TALVEK_STATUS_FINISHED) << "releasing the stores changes no status";
    TALVEK_CALL(talvekStop)();
    EXPECT_EQ(TALVEK_CALL(talvekGetStatus)(), TALVEK_STATUS_READY);
}

TEST_F(Settings, AFileNameComesBackAsItWasGiven) {
    for (const char* name : {"stone.obj", "", "no-extension", ".", "a.b.obj", "dir.old/mesh", "b\xc3\xa9ton.obj"}) {
        EXPECT_EQ(TALVEK_CALL(talvekSetFileName)(name), TALVEK_OK);
        char out[TALVEK_FILE_NAME_SIZE];
        EXPECT_EQ(TALVEK_CALL(talvekGetFileName)(out), TALVEK_OK);
        EXPECT_STREQ(out, name);
    }
}

TEST_F(Settings, ANullFileNameChangesNothing) {
    TALVEK_CALL(talvekSetFileName)("stone.obj");
    EXPECT_EQ(TALVEK_CALL(talvekSetFileName)(nullptr), TALVEK_ERROR_NULL);
    EXPECT_EQ(TALVEK_CALL(talvekGetFileName)(nullptr), TALVEK_ERROR_NULL);
    char out[TALVEK_FILE_NAME_SIZE];
    TALVEK_CALL(talvekGetFileName)(out);
    EXPECT_STREQ(out, "stone.obj");
}

TEST_F(Settings, DerivedNamesReplaceTheLastExtension) {
    nameMesh(kTriangleText, "a.b.obj");
    setUp(1, 3);
    ASSERT_EQ(TALVEK_CALL(talvekSaveParams)(), TALVEK_OK);
    ASSERT_EQ(start(), TALVEK_OK);
    EXPECT_EQ(folder_.listing(), "a.b.cfg a.b.inf a.b.obj a.b.obj.obj_i.obj a.b.obj.obj_w.obj a.b.obj.obj_w_1.obj");
}

TEST_F(Settings, ANameWithoutADotIsItsOwnBaseName) {
    std::filesystem::create_directory(folder_.file("plain"));
    TALVEK_CALL(talvekInit)();
    const std::string folder = folder_.path();
    ASSERT_EQ(folder.find('.'), std::string::npos);
    ASSERT_EQ(TALVEK_CALL(talvekSetFileName)(folder_.file("stone").c_str()), TALVEK_OK);
    ASSERT_EQ(TALVEK_CALL(talvekSaveParams)(), TALVEK_OK);
    EXPECT_EQ(folder_.listing(), "plain stone.cfg");
}

TEST_F(Settings, TheLongestNameFits) {
    const std::string name = std::string(1019, 'n') + ".obj";
    ASSERT_EQ(TALVEK_CALL(talvekSetFileName)(name.c_str()), TALVEK_OK);
    char out[TALVEK_FRAME_FILE_NAME_SIZE];
    ASSERT_EQ(TALVEK_CALL(talvekGetFileName)(out), TALVEK_OK);
    EXPECT_EQ(out, name);
    ASSERT_EQ(TALVEK_CALL(talvekSetNumEpochs)(4000), TALVEK_OK);
    ASSERT_EQ(TALVEK_CALL(talvekGetFrameFileName)(4000, out), TALVEK_OK);
    EXPECT_EQ(out, name + ".obj_w_4000.obj");
}

TEST_F(Settings, ALongerNameIsRefusedAndThePreviousOneStays) {
    TALVEK_CALL(talvekSetFileName)("stone.obj");
    for (const std::string& name : {std::string(1020, 'n') + ".obj", std::string(1024, 'n'), std::string(100000, 'n'),
                                    std::string(1020, 'n'), std::string(1023, 'n')}) {
        EXPECT_EQ(TALVEK_CALL(talvekSetFileName)(name.c_str()), TALVEK_ERROR_RANGE) << name.size();
    }
    char out[TALVEK_FILE_NAME_SIZE];
    TALVEK_CALL(talvekGetFileName)(out);
    EXPECT_STREQ(out, "stone.obj");
}

TEST_F(Settings, ALongNameIsCutInMessagesOnly) {
    const std::string name = std::string(1019, 'n') + ".obj";
    ASSERT_EQ(TALVEK_CALL(talvekSetFileName)(name.c_str()), TALVEK_OK);
    setUp(1, 3);
    EXPECT_EQ(start(), TALVEK_ERROR_MESH);
    const std::string first = output().substr(0, 1023);
    EXPECT_EQ(first, ("\nInitializing Talvek Session for " + name + " ...\n").substr(0, 1023));
    EXPECT_EQ(output().substr(1023, 9), "\tTalvek E");
}

TEST(FreshLibrary, HasNotBeenInitialised) {
    const LibraryCopy library;
    EXPECT_EQ(TALVEK_COPY_CALL(library, talvekGetStatus)(), TALVEK_STATUS_LOADED);
    EXPECT_EQ(TALVEK_COPY_CALL(library, talvekGetMode)(), 0);
    EXPECT_EQ(TALVEK_COPY_CALL(library, talvekGetModel)(), 0);
    EXPECT_EQ(TALVEK_COPY_CALL(library, talvekGetNumEpochs)(), 1);
    char out[TALVEK_FILE_NAME_SIZE] = "?";
    EXPECT_EQ(TALVEK_COPY_CALL(library, talvekGetFileName)(out), TALVEK_OK);
    EXPECT_STREQ(out, "");
    EXPECT_EQ(TALVEK_COPY_CALL(library, talvekInit)(), TALVEK_OK);
    EXPECT_EQ(TALVEK_COPY_CALL(library, talvekGetEpochTimeSpan)(1), 1);
    EXPECT_EQ(TALVEK_COPY_CALL(library, talvekGetStatus)(), TALVEK_STATUS_READY);
}

TEST(FreshLibrary, ReportsARunThatCannotBegin) {
    const LibraryCopy library;
    ::testing::internal::CaptureStdout();
    EXPECT_EQ(TALVEK_COPY_CALL(library, talvekStart)(), TALVEK_ERROR_NULL);
    EXPECT_TRUE(withoutCarriageReturns(::testing::internal::GetCapturedStdout())
                    .ends_with("Operating mode: Mesh Offsetting.\nWeathering model: Constant offsetting\n"
                               "Material params undefined!\nProcessing ABORTED!\n"));
    EXPECT_EQ(TALVEK_COPY_CALL(library, talvekGetStatus)(), TALVEK_STATUS_LOADED);
}

TEST(Exports, ThePairsShareTheirFunction) {
    EXPECT_EQ(symbolAddress("talvekGetMaxMode"), symbolAddress("talvekGetMaxModel"));
    EXPECT_EQ(symbolAddress("talvekGetNumEpochs"), symbolAddress("talvekGetNumFrames"));
    EXPECT_NE(symbolAddress("talvekGetMaxMode"), symbolAddress("talvekGetNumEpochs"));
}

}  // namespace
}  // namespace talvek::test
