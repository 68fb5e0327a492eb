#include "talvek/results/change_scale.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>

#include "talvek/support/messages.h"

namespace talvek::host {

namespace {

struct Extremes {
    double loss = 0;
    double growth = 0;
};

Extremes extremesOf(std::span<const double> displacements) {
    Extremes extremes;
    for (const double displacement : displacements) {
        if (std::isfinite(displacement)) {
            extremes.loss = std::max(extremes.loss, -displacement);
            extremes.growth = std::max(extremes.growth, displacement);
        }
    }
    return extremes;
}

/// Rounding leaves a little of the other direction in what goes one way.
ChangeKind kindOf(const Extremes& extremes) {
    constexpr double kLittle = 0.02;
    if (extremes.growth <= kLittle * extremes.loss) {
        return ChangeKind::kLoss;
    }
    return extremes.loss <= kLittle * extremes.growth ? ChangeKind::kGrowth : ChangeKind::kBoth;
}

/// The smallest of 1, 2 and 5 times a power of ten that is not below the value.
double roundStep(double value) {
    const double power = std::pow(10, std::floor(std::log10(value)));
    for (const double factor : {1.0, 2.0, 5.0}) {
        if (value <= factor * power * (1 + 1e-9)) {
            return factor * power;
        }
    }
    return 10 * power;
}

/// A number a little above the value with few digits.
double roundedUp(double value) {
    if (value <= 0) {
        return 1e-3;
    }
    const double step = roundStep(value / 20);
    return step * std::ceil(value / step * (1 - 1e-9));
}

ScaleRange rangeFor(ChangeKind kind, const Extremes& extremes) {
    const double end = roundedUp(std::max(extremes.loss, extremes.growth));
    return {kind == ChangeKind::kBoth ? -end : 0, end};
}

}  // namespace

ChangeScale::ChangeScale(std::span<const double> displacements, const PalettePair& colours,
                         std::optional<ScaleRange> range)
    : kind_(kindOf(extremesOf(displacements))),
      palette_(kind_ == ChangeKind::kBoth ? colours.diverging : colours.sequential),
      range_(range.value_or(rangeFor(kind_, extremesOf(displacements)))) {}

bool ChangeScale::isInMicrometres() const {
    constexpr double kFewHundredths = 0.1;
    return std::max(std::abs(range_.from), std::abs(range_.to)) < kFewHundredths;
}

std::string ChangeScale::name() const {
    switch (kind_) {
        case ChangeKind::kLoss:
            return "recession";
        case ChangeKind::kGrowth:
            return "growth";
        case ChangeKind::kBoth:
            break;
    }
    return "change";
}

double ChangeScale::tickStep() const {
    constexpr double kMostTicks = 6;
    return roundStep((range_.to - range_.from) / kMostTicks);
}

std::vector<double> ChangeScale::ticks() const {
    const double step = tickStep();
    std::vector<double> ticks;
    const auto first = static_cast<std::int64_t>(std::ceil(range_.from / step - 1e-6));
    const auto last = static_cast<std::int64_t>(std::floor(range_.to / step + 1e-6));
    for (std::int64_t n = first; n <= last; ++n) {
        ticks.push_back(static_cast<double>(n) * step);
    }
    return ticks;
}

std::string ChangeScale::tickText(double value) const {
    const double scale = isInMicrometres() ? 1000 : 1;
    const int decimals = std::max(0, static_cast<int>(-std::floor(std::log10(tickStep() * scale) + 1e-9)));
    char text[64];
    std::snprintf(text, sizeof text, "%.*f", decimals, std::abs(value) * scale);
    // A hyphen would be too short beside a plus sign.
    const bool isZero = std::abs(value) < 1e-6 * tickStep();
    return std::string(isZero ? "" : value < 0 ? "−" : kind_ == ChangeKind::kBoth ? "+" : "") + text;
}

}  // namespace talvek::host
