#include "talvek/view/frame_tree.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace talvek::host {

namespace {

/// Two frames that are coded, and the ones beyond them that had to be decoded for that.
struct Interval {
    std::size_t from = 0;
    std::size_t to = 0;
    std::optional<std::size_t> before;
    std::optional<std::size_t> behind;
};

CodedFrame middleOf(const Interval& interval, std::size_t middle) {
    CodedFrame coded{middle, {{interval.from, 0}, {interval.to, 0}}};
    if (interval.before) {
        coded.references.push_back({*interval.before, 0});
    }
    if (interval.behind) {
        coded.references.push_back({*interval.behind, 0});
    }
    return coded;
}

/// The value at `time` of the polynomial that is 1 at the time of one reference and 0 at those of the others.
double lagrangeWeight(const CodedFrame& coded, std::size_t of, std::span<const double> times) {
    const double time = times[coded.frame];
    const double own = times[coded.references[of].frame];
    double weight = 1;
    for (std::size_t i = 0; i < coded.references.size(); ++i) {
        const double other = times[coded.references[i].frame];
        weight *= i == of ? 1 : (time - other) / (own - other);
    }
    return weight;
}

}  // namespace

std::vector<CodedFrame> codingOrder(std::size_t frames) {
    std::vector<CodedFrame> order = {{0, {}}};
    if (frames < 2) {
        return order;
    }
    order.push_back({frames - 1, {{0, 0}}});
    std::vector<Interval> level = {{0, frames - 1, std::nullopt, std::nullopt}};
    while (!level.empty()) {
        std::vector<Interval> next;
        for (const Interval& interval : level) {
            const std::size_t middle = (interval.from + interval.to) / 2;
            if (middle == interval.from) {
                continue;
            }
            order.push_back(middleOf(interval, middle));
            next.push_back({interval.from, middle, interval.before, interval.to});
            next.push_back({middle, interval.to, interval.from, interval.behind});
        }
        level = std::move(next);
    }
    return order;
}

void setWeights(CodedFrame& coded, std::span<const double> times) {
    std::int32_t rest = kUnitWeight;
    for (std::size_t i = 1; i < coded.references.size(); ++i) {
        const double weight = lagrangeWeight(coded, i, times);
        // Beyond this a foretelling only makes noise louder, and the sums would leave what a page can add exactly.
        const bool isUsable = std::isfinite(weight) && std::abs(weight) < 4;
        coded.references[i].weight = isUsable ? static_cast<std::int32_t>(std::lround(weight * kUnitWeight)) : 0;
        rest -= coded.references[i].weight;
    }
    if (!coded.references.empty()) {
        coded.references[0].weight = rest;
    }
}

}  // namespace talvek::host
