// The defaults that each operating mode starts with.
#include "api/session/parameters.h"

#include <gtest/gtest.h>

#include <cmath>

#include "talvek.h"

namespace talvek::test {
namespace {

TEST(Defaults, TheStoneIsSandstoneInSinglePrecision) {
    for (const std::int32_t mode : {1, 2, 3}) {
        const auto material = createMaterialRecord(mode);
        EXPECT_EQ(material->de(), 0.14000000059604645);
        EXPECT_EQ(material->den(), static_cast<double>(0.11F));
        EXPECT_EQ(material->hd(), static_cast<double>(544.3F));
        EXPECT_EQ(material->ks(), 312);
        EXPECT_EQ(material->ksn(), 375);
        EXPECT_EQ(material->kr(), 2452);
        EXPECT_EQ(material->mb(), static_cast<double>(100.9F));
        EXPECT_EQ(material->db(), static_cast<double>(2.714F));
    }
}

TEST(Defaults, TheOffsettingModeKnowsNoStone) {
    const auto material = createMaterialRecord(TALVEK_MODE_OFFSETTING);
    for (const double value : material->values) {
        EXPECT_EQ(value, 0);
    }
}

TEST(Defaults, TheEnvironmentIsThatOfACity) {
    const EpochTable table = createEpochTable(3, 30, TALVEK_MODE_GRAIN_WEAVER);
    const float unit = std::pow(10.0F, -13.0F);
    for (std::int32_t n = 1; n <= 3; ++n) {
        const EpochRecord& epoch = table.epoch(n);
        EXPECT_EQ(epoch.days(), 30);
        EXPECT_EQ(epoch.so2(), static_cast<double>(unit * 4.09F));
        EXPECT_EQ(epoch.no2(), static_cast<double>(unit * 10.23F));
        EXPECT_EQ(epoch.rv(), static_cast<double>(1.13F));
        EXPECT_EQ(epoch.rph(), 4.5);
    }
}

TEST(Defaults, TheOffsettingModeHasOffsetsInstead) {
    const EpochTable table = createEpochTable(1, 1, TALVEK_MODE_OFFSETTING);
    EXPECT_EQ(table.epoch(1).constantOffset(), static_cast<double>(-0.004F));
    EXPECT_EQ(table.epoch(1).meanOffset(), static_cast<double>(-0.004F));
    EXPECT_EQ(table.epoch(1).offsetSpread(), static_cast<double>(0.002F));
    EXPECT_EQ(table.epoch(1).smoothing(), static_cast<double>(-0.0002F));
}

TEST(Defaults, ATableWithoutEpochsIsATable) {
    const EpochTable table = createEpochTable(0, 1, 1);
    EXPECT_TRUE(table);
    EXPECT_EQ(table.size, 0);
    EXPECT_FALSE(EpochTable());
}

}  // namespace
}  // namespace talvek::test
