// Any surface of a run can be had from few others.
#include "talvek/view/frame_tree.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numeric>
#include <set>

namespace talvek::test {
namespace {

using host::CodedFrame;

TEST(FrameTree, CodesEveryFrameOnceAndReferencesFirst) {
    for (const std::size_t count : {1U, 2U, 3U, 4U, 11U, 64U, 65U, 301U}) {
        std::set<std::size_t> coded;
        for (const CodedFrame& each : host::codingOrder(count)) {
            for (const host::Reference& reference : each.references) {
                EXPECT_TRUE(coded.contains(reference.frame)) << each.frame << " from " << reference.frame;
            }
            EXPECT_TRUE(coded.insert(each.frame).second);
        }
        EXPECT_EQ(coded.size(), count);
        EXPECT_EQ(*coded.rbegin(), count - 1);
    }
}

TEST(FrameTree, NeedsFewOthersForAnyFrame) {
    constexpr std::size_t kCount = 4001;
    std::vector<std::set<std::size_t>> needed(kCount);
    for (const CodedFrame& each : host::codingOrder(kCount)) {
        for (const host::Reference& reference : each.references) {
            needed[each.frame].insert(reference.frame);
            needed[each.frame].insert(needed[reference.frame].begin(), needed[reference.frame].end());
        }
        EXPECT_LE(static_cast<double>(needed[each.frame].size()), std::log2(kCount) + 2);
    }
}

TEST(FrameTree, ForetellsCubicMovementExactly) {
    const std::vector<double> times = {0, 1, 2, 3, 4, 5, 6, 7, 8};
    for (CodedFrame& each : host::codingOrder(times.size())) {
        if (each.references.size() < 3) {
            continue;
        }
        host::setWeights(each, times);
        const auto degree = static_cast<int>(each.references.size()) - 1;
        double foretold = 0;
        for (const host::Reference& reference : each.references) {
            foretold += reference.weight * std::pow(times[reference.frame], degree) / host::kUnitWeight;
        }
        EXPECT_NEAR(foretold, std::pow(times[each.frame], degree), 0.05 * std::pow(8, degree) / 100);
    }
}

TEST(FrameTree, GivesWeightsThatAddUpWhereNothingMoves) {
    const std::vector<double> times(9, 0.0);
    for (CodedFrame& each : host::codingOrder(times.size())) {
        host::setWeights(each, times);
        const std::int32_t sum = std::accumulate(
            each.references.begin(), each.references.end(), 0,
            [](std::int32_t total, const host::Reference& reference) { return total + reference.weight; });
        EXPECT_EQ(sum, each.references.empty() ? 0 : host::kUnitWeight);
    }
}

}  // namespace
}  // namespace talvek::test
