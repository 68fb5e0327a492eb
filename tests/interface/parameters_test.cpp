// Material and epochs through the interface: defaults, ranges, result codes in their order, array sizes.
#include <limits>

#include "interface/host_session.h"
#include "support/guarded_array.h"

namespace talvek::test {
namespace {

constexpr std::uint32_t kMinusOne = std::numeric_limits<std::uint32_t>::max();
constexpr float kEnvironment[4] = {1, 2, 3, 4};

class HostParameters : public HostSession {};

TEST_F(HostParameters, StartAsSandstoneInACity) {
    setUp(1, 3, 1, 1);
    EXPECT_EQ(material(), (Floats{0.14F, 0.11F, 544.3F, 312, 375, 2452, 100.9F, 2.714F}));
    EXPECT_EQ(epoch(1), (Floats{1, 1.0e-13F * 4.09F, 1.0e-13F * 10.23F, 1.13F, 4.5F}));
}

TEST_F(HostParameters, StartAsOffsetsInTheOffsettingMode) {
    setUp(0, 0, 1, 1);
    EXPECT_EQ(material(), Floats(8, 0));
    EXPECT_EQ(epoch(1), (Floats{1, -0.004F, -0.004F, 0.002F, -0.0002F}));
}

TEST_F(HostParameters, TheModeOfTheirCreationDecides) {
    setUp(1, 3);
    TALVEK_CALL(talvekSetMode)(0);
    TALVEK_CALL(talvekInit)();
    EXPECT_EQ(material()[3], 312);
    TALVEK_CALL(talvekFree)();
    TALVEK_CALL(talvekInit)();
    EXPECT_EQ(material()[3], 0);
}

TEST_F(HostParameters, ASecondInitKeepsTheValues) {
    setUp(1, 3);
    const Floats stone = {1, 2, 3, 4, 5, 6, 7, 8};
    ASSERT_EQ(TALVEK_CALL(talvekSetMaterialParams)(stone.data()), TALVEK_OK);
    ASSERT_EQ(TALVEK_CALL(talvekSetEpochParams)(1, kEnvironment), TALVEK_OK);
    ASSERT_EQ(TALVEK_CALL(talvekInit)(), TALVEK_OK);
    EXPECT_EQ(material(), stone);
    EXPECT_EQ(epoch(1), (Floats{365, 1, 2, 3, 4}));
}

TEST_F(HostParameters, EveryEpochStartsAlike) {
    setUp(1, 3, 3, 30);
    EXPECT_EQ(epoch(1)[0], 30);
    EXPECT_EQ(epoch(2), epoch(1));
    EXPECT_EQ(epoch(3), epoch(1));
}

TEST_F(HostParameters, EpochZeroStandsForAllWhenSetting) {
    setUp(1, 3, 3, 30);
    EXPECT_EQ(TALVEK_CALL(talvekSetEpochTimeSpan)(0, 10), TALVEK_OK);
    EXPECT_EQ(TALVEK_CALL(talvekSetEpochParams)(0, kEnvironment), TALVEK_OK);
    for (std::uint32_t n = 1; n <= 3; ++n) {
        EXPECT_EQ(epoch(n), (Floats{10, 1, 2, 3, 4}));
    }
    float out[4];
    EXPECT_EQ(TALVEK_CALL(talvekGetEpochParams)(0, out), TALVEK_ERROR_RANGE);
    EXPECT_EQ(TALVEK_CALL(talvekGetEpochTimeSpan)(0), 0);
}

TEST_F(HostParameters, AnEpochIsSetAlone) {
    setUp(1, 3, 3, 30);
    const Floats before = epoch(1);
    EXPECT_EQ(TALVEK_CALL(talvekSetEpochTimeSpan)(2, 1000000), TALVEK_OK);
    EXPECT_EQ(TALVEK_CALL(talvekSetEpochParams)(2, kEnvironment), TALVEK_OK);
    EXPECT_EQ(epoch(1), before);
    EXPECT_EQ(epoch(2), (Floats{1000000, 1, 2, 3, 4}));
    EXPECT_EQ(epoch(3), before);
}

TEST_F(HostParameters, NumbersBeyondTheEpochsAreOutOfRange) {
    setUp(1, 3, 3);
    for (const std::uint32_t n : {4U, 4000U, kMinusOne, 0x80000000U}) {
        Floats out(4, -77);
        EXPECT_EQ(TALVEK_CALL(talvekSetEpochParams)(n, kEnvironment), TALVEK_ERROR_RANGE);
        EXPECT_EQ(TALVEK_CALL(talvekGetEpochParams)(n, out.data()), TALVEK_ERROR_RANGE);
        EXPECT_EQ(out, Floats(4, -77)) << "nothing is copied";
        EXPECT_EQ(TALVEK_CALL(talvekSetEpochTimeSpan)(n, 1), TALVEK_ERROR_RANGE);
        EXPECT_EQ(TALVEK_CALL(talvekGetEpochTimeSpan)(n), 0);
    }
}

TEST_F(HostParameters, NumbersBeyondTheTableAreOutOfRange) {
    setUp(1, 3, 2);
    ASSERT_EQ(TALVEK_CALL(talvekSetNumEpochs)(5), TALVEK_OK);
    float out[4];
    std::uint32_t days = 77;
    EXPECT_EQ(TALVEK_CALL(talvekSetEpochParams)(3, kEnvironment), TALVEK_ERROR_RANGE);
    EXPECT_EQ(TALVEK_CALL(talvekGetEpochParams)(5, out), TALVEK_ERROR_RANGE);
    EXPECT_EQ(TALVEK_CALL(talvekSetEpochTimeSpan)(3, 1), TALVEK_ERROR_RANGE);
    EXPECT_EQ(TALVEK_CALL(talvekGetEpochTimeSpan)(3), 0);
    EXPECT_EQ(TALVEK_CALL(talvekGetFrameTime)(3, &days), TALVEK_ERROR_RANGE);
    EXPECT_EQ(days, 0);
    EXPECT_EQ(TALVEK_CALL(talvekSetEpochParams)(0, kEnvironment), TALVEK_OK);
    EXPECT_EQ(epoch(2), (Floats{365, 1, 2, 3, 4}));
}

TEST_F(HostParameters, ALoweredCountUsesTheFirstEpochs) {
    setUp(1, 3, 3);
    ASSERT_EQ(TALVEK_CALL(talvekSetNumEpochs)(1), TALVEK_OK);
    EXPECT_EQ(TALVEK_CALL(talvekSetEpochParams)(0, kEnvironment), TALVEK_OK);
    EXPECT_EQ(TALVEK_CALL(talvekSetEpochParams)(2, kEnvironment), TALVEK_ERROR_RANGE);
    ASSERT_EQ(TALVEK_CALL(talvekSetNumEpochs)(3), TALVEK_OK);
    EXPECT_EQ(epoch(1)[1], 1);
    EXPECT_NE(epoch(2)[1], 1) << "only the epochs that counted then were set";
}

TEST_F(HostParameters, DaysHaveARange) {
    setUp(1, 3, 1, 30);
    for (const std::uint32_t days : {0U, 1000001U, kMinusOne}) {
        EXPECT_EQ(TALVEK_CALL(talvekSetEpochTimeSpan)(1, days), TALVEK_ERROR_RANGE);
        EXPECT_EQ(TALVEK_CALL(talvekSetEpochTimeSpan)(0, days), TALVEK_ERROR_RANGE);
        EXPECT_EQ(TALVEK_CALL(talvekGetEpochTimeSpan)(1), 30);
    }
    EXPECT_EQ(TALVEK_CALL(talvekSetEpochTimeSpan)(1, 1), TALVEK_OK);
    EXPECT_EQ(TALVEK_CALL(talvekSetEpochTimeSpan)(1, 1000000), TALVEK_OK);
}

TEST_F(HostParameters, NullPointersChangeNothing) {
    setUp(1, 3);
    const Floats stone = material();
    EXPECT_EQ(TALVEK_CALL(talvekSetMaterialParams)(nullptr), TALVEK_ERROR_NULL);
    EXPECT_EQ(TALVEK_CALL(talvekGetMaterialParams)(nullptr), TALVEK_ERROR_NULL);
    EXPECT_EQ(TALVEK_CALL(talvekSetEpochParams)(1, nullptr), TALVEK_ERROR_NULL);
    EXPECT_EQ(TALVEK_CALL(talvekGetEpochParams)(1, nullptr), TALVEK_ERROR_NULL);
    EXPECT_EQ(material(), stone);
}

TEST_F(HostParameters, ANullPointerComesBeforeTheRange) {
    setUp(1, 3);
    EXPECT_EQ(TALVEK_CALL(talvekSetEpochParams)(99, nullptr), TALVEK_ERROR_NULL);
    EXPECT_EQ(TALVEK_CALL(talvekGetEpochParams)(99, nullptr), TALVEK_ERROR_NULL);
    EXPECT_EQ(TALVEK_CALL(talvekGetEpochParams)(0, nullptr), TALVEK_ERROR_NULL);
}

TEST_F(HostParameters, GettersSayThatAStoreIsMissing) {
    float out[8];
    EXPECT_EQ(captured([&out] { return TALVEK_CALL(talvekGetMaterialParams)(out); }), TALVEK_ERROR_NULL);
    EXPECT_EQ(output(), "gmtlv NOT created OK!\n\n");
    EXPECT_EQ(captured([] { return TALVEK_CALL(talvekGetMaterialParams)(nullptr); }), TALVEK_ERROR_NULL);
    EXPECT_EQ(output(), "gmtlv NOT created OK!\n\n");
    for (const std::uint32_t n : {0U, 1U, 99U}) {
        EXPECT_EQ(captured([n, &out] { return TALVEK_CALL(talvekGetEpochParams)(n, out); }), TALVEK_ERROR_NULL);
        EXPECT_EQ(output(), "genvv NOT created OK!\n\n");
    }
    EXPECT_EQ(captured([] { return TALVEK_CALL(talvekGetEpochParams)(1, nullptr); }), TALVEK_ERROR_NULL);
    EXPECT_EQ(output(), "genvv NOT created OK!\n\n");
    EXPECT_EQ(captured([] { return TALVEK_CALL(talvekGetEpochTimeSpan)(1); }), 0);
    EXPECT_EQ(output(), "");
}

TEST_F(HostParameters, SettersRefuseAMissingStore) {
    const float values[8] = {};
    EXPECT_EQ(captured([&values] { return TALVEK_CALL(talvekSetMaterialParams)(values); }), TALVEK_ERROR_NULL);
    EXPECT_EQ(output(), "");
    EXPECT_EQ(TALVEK_CALL(talvekSetEpochParams)(1, values), TALVEK_ERROR_NULL);
    EXPECT_EQ(TALVEK_CALL(talvekSetEpochTimeSpan)(1, 5), TALVEK_ERROR_NULL);
    EXPECT_EQ(TALVEK_CALL(talvekSetEpochTimeSpan)(1, 0), TALVEK_ERROR_RANGE) << "the days are looked at first";
}

TEST_F(HostParameters, ArraysAreReadAndWrittenUpToTheirEnd) {
    setUp(1, 3, 2);
    GuardedArray<float> stone(TALVEK_MATERIAL_PARAMS);
    GuardedArray<float> environment(TALVEK_EPOCH_PARAMS);
    ASSERT_EQ(TALVEK_CALL(talvekGetMaterialParams)(stone.data()), TALVEK_OK);
    ASSERT_EQ(TALVEK_CALL(talvekSetMaterialParams)(stone.data()), TALVEK_OK);
    ASSERT_EQ(TALVEK_CALL(talvekGetEpochParams)(2, environment.data()), TALVEK_OK);
    ASSERT_EQ(TALVEK_CALL(talvekSetEpochParams)(0, environment.data()), TALVEK_OK);
    EXPECT_TRUE(stone.isFrontIntact());
    EXPECT_TRUE(environment.isFrontIntact());
    EXPECT_EQ(stone[7], 2.714F);
    EXPECT_EQ(environment[3], 4.5F);
}

TEST_F(HostParameters, FourThousandEpochsExist) {
    setUp(1, 3, 4000, 1000000);
    EXPECT_EQ(TALVEK_CALL(talvekSetEpochParams)(4000, kEnvironment), TALVEK_OK);
    EXPECT_EQ(epoch(4000), (Floats{1000000, 1, 2, 3, 4}));
    std::uint32_t days = 0;
    EXPECT_EQ(TALVEK_CALL(talvekGetFrameTime)(4000, &days), TALVEK_OK);
    EXPECT_EQ(days, 4000000000U);
}

}  // namespace
}  // namespace talvek::test
