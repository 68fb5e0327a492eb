// The parameter file: what is written, what is read, and the habits of lines that were typed by hand.
#include <clocale>

#include "interface/host_session.h"
#include "support/comma_locale.h"

namespace talvek::test {
namespace {

class ParameterFile : public HostSession {
  protected:
    void SetUp() override {
        HostSession::SetUp();
        ASSERT_EQ(TALVEK_CALL(talvekSetFileName)(folder_.file("stone.obj").c_str()), TALVEK_OK);
    }

    std::int32_t read(std::string_view content) {
        writeFile(folder_.file("stone.cfg"), content);
        return captured(TALVEK_CALL(talvekReadParams));
    }
    static std::int32_t mode() { return TALVEK_CALL(talvekGetMode)(); }
    static std::int32_t model() { return TALVEK_CALL(talvekGetModel)(); }
    static std::int32_t count() { return TALVEK_CALL(talvekGetNumEpochs)(); }
    static std::int32_t days(std::uint32_t n) { return TALVEK_CALL(talvekGetEpochTimeSpan)(n); }
};

const Floats kSandstone = {0.14F, 0.11F, 544.3F, 312, 375, 2452, 100.9F, 2.714F};
const Floats kCityYear = {365, 1.0e-13F * 4.09F, 1.0e-13F * 10.23F, 1.13F, 4.5F};

TEST_F(ParameterFile, IsWrittenToTheLetter) {
    setUp(1, 3, 2);
    ASSERT_EQ(captured(TALVEK_CALL(talvekSaveParams)), TALVEK_OK);
    EXPECT_EQ(output(), "");
    EXPECT_EQ(text("stone.cfg"),
              "//Material and environmental parameters for the Talvek Engine v 2.02\n"
              "//automatically created configuration file: " +
                  folder_.file("stone.cfg") +
                  "\n\nmode = 1;\n\nmodel = 3;\n\n"
                  "mtl = 0.14, 0.11, 544.3, 312, 375, 2452, 100.9, 2.714;\n\nepcs = 2;\n\n"
                  "epc_1 = 365, 4.09e-13, 1.023e-12, 1.13, 4.5;\n"
                  "epc_2 = 365, 4.09e-13, 1.023e-12, 1.13, 4.5;\n\n");
    EXPECT_EQ(folder_.listing(), "stone.cfg");
}

TEST_F(ParameterFile, ComesBackAsItWasSaved) {
    setUp(2, 1, 3, 17);
    const Floats stone = {1.25F, 1e-20F, -3, 400000, 1e20F, 0, 7.125F, 8};
    const float environment[4] = {1e-13F, 2.5F, -1, 12.5F};
    ASSERT_EQ(TALVEK_CALL(talvekSetMaterialParams)(stone.data()), TALVEK_OK);
    ASSERT_EQ(TALVEK_CALL(talvekSetEpochParams)(2, environment), TALVEK_OK);
    const Floats first = epoch(1);
    ASSERT_EQ(TALVEK_CALL(talvekSaveParams)(), TALVEK_OK);
    resetSession();
    ASSERT_EQ(TALVEK_CALL(talvekSetFileName)(folder_.file("stone.obj").c_str()), TALVEK_OK);
    ASSERT_EQ(captured(TALVEK_CALL(talvekReadParams)), TALVEK_OK);
    EXPECT_EQ(mode(), 2);
    EXPECT_EQ(model(), 1);
    EXPECT_EQ(count(), 3);
    EXPECT_EQ(material(), stone);
    EXPECT_EQ(epoch(2), (Floats{17, 1e-13F, 2.5F, -1, 12.5F}));
    for (std::size_t i = 0; i < first.size(); ++i) {
        EXPECT_NEAR(epoch(3)[i], first[i], first[i] * 1e-6F) << "six digits are kept";
    }
}

TEST_F(ParameterFile, ReadingSaysWhatItDoesWithTheStores) {
    EXPECT_EQ(read("mode = 1;\n"), TALVEK_OK);
    EXPECT_EQ(output(), "Releasing allocated memory for the params!\nAllocating memory for the params!\n");
}

TEST_F(ParameterFile, ThatIsMissingLeavesDefaults) {
    setUp(1, 2, 2, 40);
    const Floats stone(8, 1);
    TALVEK_CALL(talvekSetMaterialParams)(stone.data());
    EXPECT_EQ(captured(TALVEK_CALL(talvekReadParams)), TALVEK_ERROR_RANGE);
    EXPECT_EQ(output(), "Releasing allocated memory for the params!\nError opening datafile " +
                            folder_.file("stone.cfg") + ". Please check!\nAllocating memory for the params!\n");
    EXPECT_EQ(mode(), 1);
    EXPECT_EQ(model(), 2);
    EXPECT_EQ(count(), 2);
    EXPECT_EQ(material(), kSandstone);
    EXPECT_EQ(days(2), 40);
}

TEST_F(ParameterFile, AFolderOfThatNameIsNoFile) {
    std::filesystem::create_directory(folder_.file("stone.cfg"));
    EXPECT_EQ(captured(TALVEK_CALL(talvekReadParams)), TALVEK_ERROR_RANGE);
    EXPECT_EQ(TALVEK_CALL(talvekSaveParams)(), TALVEK_ERROR_RANGE);
    EXPECT_TRUE(std::filesystem::is_directory(folder_.file("stone.cfg")));
}

TEST_F(ParameterFile, OutOfRangeIntegersFallBack) {
    read("mode = -1;\nmodel = 9;\nepcs = 5000;\n");
    EXPECT_EQ(mode(), 1);
    EXPECT_EQ(model(), 3);
    EXPECT_EQ(count(), 1);
    read("mode = 4;\nmodel = -1;\nepcs = -1;\n");
    EXPECT_EQ(mode(), 1);
    EXPECT_EQ(model(), 3);
    EXPECT_EQ(count(), 1);
    read("mode = 99999999999;\nmodel = 99999999999;\nepcs = 99999999999;\n");
    EXPECT_EQ(mode(), 1);
    EXPECT_EQ(model(), 3);
    EXPECT_EQ(count(), 1);
}

TEST_F(ParameterFile, IntegersAtTheirLimitsStand) {
    read("mode = 3;\nmodel = 0;\nepcs = 4000;\n");
    EXPECT_EQ(mode(), 3);
    EXPECT_EQ(model(), 0);
    EXPECT_EQ(count(), 4000);
    EXPECT_EQ(days(4000), 1);
}

TEST_F(ParameterFile, ZeroEpochsAreKept) {
    EXPECT_EQ(read("mode = 1;\nepcs = 0;\nepc_1 = 1;\nepc_0 = 2;\n"), TALVEK_OK);
    EXPECT_EQ(count(), 0);
    EXPECT_EQ(days(1), 0);
    float out[4];
    EXPECT_EQ(TALVEK_CALL(talvekGetEpochParams)(1, out), TALVEK_ERROR_RANGE);
    EXPECT_EQ(TALVEK_CALL(talvekSetEpochParams)(0, out), TALVEK_OK);
    EXPECT_EQ(TALVEK_CALL(talvekSaveParams)(), TALVEK_OK);
    EXPECT_TRUE(text("stone.cfg").ends_with("epcs = 0;\n\n\n"));
}

TEST_F(ParameterFile, IsNotSavedWithoutStoresWhateverTheCount) {
    read("mode = 1;\nepcs = 0;\n");
    writeFile(folder_.file("stone.cfg"), "old");
    TALVEK_CALL(talvekFree)();
    EXPECT_EQ(TALVEK_CALL(talvekSaveParams)(), TALVEK_ERROR_NULL);
    TALVEK_CALL(talvekSetNumEpochs)(1);
    EXPECT_EQ(TALVEK_CALL(talvekSaveParams)(), TALVEK_ERROR_NULL);
    EXPECT_EQ(text("stone.cfg"), "old");
}

TEST_F(ParameterFile, IsNotSavedBeyondTheEpochsThatExist) {
    setUp(1, 3, 2);
    TALVEK_CALL(talvekSetNumEpochs)(3);
    EXPECT_EQ(TALVEK_CALL(talvekSaveParams)(), TALVEK_ERROR_NULL);
    EXPECT_FALSE(exists(folder_.file("stone.cfg")));
}

TEST_F(ParameterFile, AShortListRepeatsItsLastNumber) {
    read("mode = 1;\nmtl = 5;\n");
    EXPECT_EQ(material(), Floats(8, 5));
    read("mode = 1;\nmtl = 1, 2;\nepc_1 = 3, 4;\n");
    EXPECT_EQ(material(), (Floats{1, 2, 2, 2, 2, 2, 2, 2}));
    EXPECT_EQ(epoch(1), (Floats{3, 4, 4, 4, 4}));
}

TEST_F(ParameterFile, ATrailingCommaEndsAListInZeros) {
    read("mtl = 1, 2,;\n");
    EXPECT_EQ(material(), (Floats{1, 2, 0, 0, 0, 0, 0, 0}));
}

TEST_F(ParameterFile, ALongListKeepsItsFirstNumbers) {
    read("mtl = 1, 2, 3, 4, 5, 6, 7, 8, 9, 10;\nepc_1 = 1, 2, 3, 4, 5, 6, 7;\n");
    EXPECT_EQ(material(), (Floats{1, 2, 3, 4, 5, 6, 7, 8}));
    EXPECT_EQ(epoch(1), (Floats{1, 2, 3, 4, 5}));
}

TEST_F(ParameterFile, AnEmptyValueIsZero) {
    read("mode = 2;\nmode = ;\nmtl = ;\nepc_1 =\n");
    EXPECT_EQ(mode(), 0);
    EXPECT_EQ(material(), Floats(8, 0));
    EXPECT_EQ(epoch(1), Floats(5, 0));
}

TEST_F(ParameterFile, NumbersAreWhatAtofMakesOfThem) {
    read("mtl = 0x10, 1e2, -.5, word, 1.5x, +3, 1e-400, 7 8;\n");
    EXPECT_EQ(material(), (Floats{16, 100, -0.5F, 0, 1.5F, 3, 0, 7}));
}

TEST_F(ParameterFile, TheTemplateFillsTheEpochsWithoutALine) {
    for (const char* content : {"epcs = 3;\nepc_0 = 30, 1, 2, 3, 4;\nepc_2 = 10, 0, 0, 0, 0;\n",
                                "epc_2 = 10, 0, 0, 0, 0;\nepcs = 3;\nepc_0 = 30, 1, 2, 3, 4;\n"}) {
        read(content);
        EXPECT_EQ(epoch(1), (Floats{30, 1, 2, 3, 4}));
        EXPECT_EQ(epoch(2), (Floats{10, 0, 0, 0, 0}));
        EXPECT_EQ(epoch(3), (Floats{30, 1, 2, 3, 4}));
    }
}

TEST_F(ParameterFile, TheLastTemplateHolds) {
    read("epcs = 2;\nepc_0 = 1;\nepc_0 = 2;\n");
    EXPECT_EQ(epoch(1), Floats(5, 2));
}

TEST_F(ParameterFile, ANumberWithALeadingZeroIsTemplateAndEpoch) {
    read("epcs = 3;\nepc_02 = 7;\nepc_3 = 9;\n");
    EXPECT_EQ(epoch(1), Floats(5, 7));
    EXPECT_EQ(epoch(2), Floats(5, 7));
    EXPECT_EQ(epoch(3), Floats(5, 9));
}

TEST_F(ParameterFile, EpochsThatAreNotThereAreIgnored) {
    TALVEK_CALL(talvekSetTimeSpan)(1, 365);
    read("mode = 1;\nepcs = 2;\nepc_3 = 1;\nepc_-1 = 1;\nepc_99999999999 = 1;\nepc_x = 1;\nepc_ = 1;\n");
    EXPECT_EQ(epoch(1), kCityYear);
    EXPECT_EQ(epoch(2), kCityYear);
}

TEST_F(ParameterFile, WithoutEpochLinesTheDefaultsStay) {
    TALVEK_CALL(talvekSetTimeSpan)(1, 365);
    read("mode = 1;\nepcs = 3;\n");
    EXPECT_EQ(epoch(3), kCityYear);
    EXPECT_EQ(material(), kSandstone);
}

TEST_F(ParameterFile, TheModeOfTheFileDecidesTheDefaults) {
    TALVEK_CALL(talvekSetMode)(1);
    read("mode = 0;\n");
    EXPECT_EQ(material(), Floats(8, 0));
    EXPECT_EQ(epoch(1)[1], -0.004F);
}

TEST_F(ParameterFile, TheLastModeOfSeveralDecidesTheDefaults) {
    read("mode = 1;\nmode = 0;\n");
    EXPECT_EQ(mode(), 0);
    EXPECT_EQ(material(), Floats(8, 0));
}

TEST_F(ParameterFile, TheCountReadSoFarBoundsTheEpochLines) {
    read("mode = 1;\nepcs = 2;\nepc_3 = 7;\nepcs = 3;\nepc_3 = 8;\n");
    EXPECT_EQ(count(), 3);
    EXPECT_EQ(epoch(3), Floats(5, 8));
    read("mode = 1;\nepcs = 3;\nepc_3 = 8;\nepcs = 2;\nepc_2 = 7;\n");
    EXPECT_EQ(count(), 2);
    EXPECT_EQ(epoch(2), Floats(5, 7));
}

TEST_F(ParameterFile, TheCountNeverReachesBeyondTheTable) {
    read("mode = 1;\nepcs = 4000;\nepc_4000 = 7;\nepcs = 1;\nepc_1 = 8;\n");
    EXPECT_EQ(count(), 1);
    EXPECT_EQ(epoch(1), Floats(5, 8));
}

TEST_F(ParameterFile, KeysAreComparedByPrefixAndCase) {
    read("mode = 1;\nmodel = 1;\nmodels and more = 2;\nmodest = 3;\nMODE = 0;\nModel = 0;\nmtlx = 6;\nepcs2 = 2;\n");
    EXPECT_EQ(model(), 2);
    EXPECT_EQ(mode(), 3);
    EXPECT_EQ(material(), Floats(8, 6));
    EXPECT_EQ(count(), 2);
}

TEST_F(ParameterFile, AModelLineIsNoModeLine) {
    read("mode = 1;\nmodel = 2;\n");
    EXPECT_EQ(mode(), 1);
    EXPECT_EQ(model(), 2);
}

TEST_F(ParameterFile, LeadingBlanksMakeALineUnknown) {
    read("mode = 1;\n mode = 2;\n\tmodel = 1;\n //mode = 3;\n");
    EXPECT_EQ(mode(), 1);
    EXPECT_EQ(model(), 0);
}

TEST_F(ParameterFile, BlanksAroundTheSignAreHarmless) {
    read("mode   =   2  ;\nmodel=1;\nepcs\t=\t2\nepc_1 \t= 5;\n");
    EXPECT_EQ(mode(), 2);
    EXPECT_EQ(model(), 1);
    EXPECT_EQ(count(), 2);
    EXPECT_EQ(epoch(1), Floats(5, 5));
}

TEST_F(ParameterFile, ALineWithoutASignIsItsOwnValue) {
    read("mode = 2;\nmode 2;\nmodel = 1;\nmodel: 1\nmtl 1, 2;\n");
    EXPECT_EQ(mode(), 0);
    EXPECT_EQ(model(), 0);
    EXPECT_EQ(material(), (Floats{0, 2, 2, 2, 2, 2, 2, 2}));
}

TEST_F(ParameterFile, WhatFollowsASemicolonIsIgnored) {
    read("mode = 1; mode = 2\nmtl = 1; 2, 3\n");
    EXPECT_EQ(mode(), 1);
    EXPECT_EQ(material(), Floats(8, 1));
}

TEST_F(ParameterFile, ASemicolonBeforeTheSignBelongsToTheKey) {
    read("mode; = 2;\n");
    EXPECT_EQ(mode(), 2);
}

TEST_F(ParameterFile, TheFirstSignOfSeveralEndsTheKey) {
    read("mode = = 2;\nmodel = 1 = 2;\n");
    EXPECT_EQ(mode(), 0) << "the value begins with a sign, which is no number";
    EXPECT_EQ(model(), 1);
}

TEST_F(ParameterFile, LinesMayEndAsOnTheOtherPlatform) {
    read("mode = 2;\r\nmodel = 1\r\n\r\nepcs = 2\r\nepc_2 = 1, 2, 3, 4, 5\r\nmtl = 5\r\n");
    EXPECT_EQ(mode(), 2);
    EXPECT_EQ(model(), 1);
    EXPECT_EQ(epoch(2), (Floats{1, 2, 3, 4, 5}));
    EXPECT_EQ(material(), Floats(8, 5));
}

TEST_F(ParameterFile, TheLastLineNeedsNoEnd) {
    read("mode = 2;\nmodel = 1");
    EXPECT_EQ(model(), 1);
}

TEST_F(ParameterFile, MayBeEmptyOrNoTextAtAll) {
    EXPECT_EQ(read(""), TALVEK_OK);
    EXPECT_EQ(read(std::string(100000, '\0')), TALVEK_OK);
    EXPECT_EQ(read(std::string(500000, '=')), TALVEK_OK);
    EXPECT_EQ(read("mtl = " + std::string(500000, ',')), TALVEK_OK);
    EXPECT_EQ(material(), Floats(8, 0));
}

TEST_F(ParameterFile, DaysThatNoIntHoldsAreTheNearestOne) {
    read("epcs = 5;\nepc_1 = 1e300;\nepc_2 = -1e300;\nepc_3 = nan;\nepc_4 = 2.99;\nepc_5 = inf;\n");
    EXPECT_EQ(days(1), 2147483647);
    EXPECT_EQ(days(2), -2147483647 - 1);
    EXPECT_EQ(days(3), 0);
    EXPECT_EQ(days(4), 2);
    EXPECT_EQ(days(5), 2147483647);
    std::uint32_t sum = 0;
    EXPECT_EQ(TALVEK_CALL(talvekGetFrameTime)(1, &sum), TALVEK_OK);
    EXPECT_EQ(sum, 2147483647U);
}

TEST_F(ParameterFile, SumsOfDaysSaturate) {
    read("epcs = 3;\nepc_0 = 1e300;\n");
    std::uint32_t sum = 0;
    EXPECT_EQ(TALVEK_CALL(talvekGetFrameTime)(2, &sum), TALVEK_OK);
    EXPECT_EQ(sum, 4294967294U);
    EXPECT_EQ(TALVEK_CALL(talvekGetFrameTime)(3, &sum), TALVEK_OK);
    EXPECT_EQ(sum, 4294967295U);
    read("epcs = 2;\nepc_0 = -5;\n");
    EXPECT_EQ(TALVEK_CALL(talvekGetFrameTime)(2, &sum), TALVEK_OK);
    EXPECT_EQ(sum, 0);
}

TEST_F(ParameterFile, CannotBeSavedInAFolderThatIsNotThere) {
    TALVEK_CALL(talvekSetFileName)(folder_.file("absent/stone.obj").c_str());
    setUp(1, 3);
    EXPECT_EQ(captured(TALVEK_CALL(talvekSaveParams)), TALVEK_ERROR_RANGE);
    EXPECT_EQ(output(), "");
}

TEST_F(ParameterFile, KeepsItsPointInALocaleWithACommaThere) {
    setUp(1, 3, 1);
    const CommaLocale locale;
    if (!locale.isSet()) {
        GTEST_SKIP() << "this system has no locale with a decimal comma";
    }
    ASSERT_EQ(TALVEK_CALL(talvekSaveParams)(), TALVEK_OK);
    EXPECT_NE(text("stone.cfg").find("mtl = 0.14, 0.11, 544.3, "), std::string::npos);
    read("mtl = 1.5, 2.5;\n");
    EXPECT_EQ(material()[0], 1.5F);
    EXPECT_EQ(material()[1], 2.5F);
}

}  // namespace
}  // namespace talvek::test
