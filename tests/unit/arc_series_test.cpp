// The compiler and the machine have to calculate the same tables, to the last bit.
#include "math/arc_series.h"

#include <gtest/gtest.h>

#include <cstring>

namespace talvek::exact {
namespace {

template <std::size_t Count>
void expectSameBits(const std::array<Node, Count>& a, const std::array<Node, Count>& b) {
    for (std::size_t i = 0; i < Count; ++i) {
        EXPECT_EQ(std::memcmp(&a[i], &b[i], sizeof a[i]), 0) << i;
    }
}

TEST(ArcSeries, OfTheSineIsTheSameAtRunTime) {
    static constexpr auto kCompiled = makeNodes<33>(completeArcSine);
    expectSameBits(makeNodes<33>(completeArcSine), kCompiled);
    EXPECT_EQ(kCompiled[32].value().hi, 0x1.0c152382d7366p-1) << "pi / 6";
}

TEST(ArcSeries, OfTheTangentIsTheSameAtRunTime) {
    static constexpr auto kCompiled = makeNodes<65>(completeArcTangent);
    expectSameBits(makeNodes<65>(completeArcTangent), kCompiled);
    EXPECT_EQ(kCompiled[64].value().hi, 0x1.921fb54442d18p-1) << "pi / 4";
}

}  // namespace
}  // namespace talvek::exact
