// The scale on which the change of a surface is shown: which numbers, which colours, which unit.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "talvek/results/palette.h"

namespace talvek::host {

/// What is shown of a displacement.
enum class ChangeKind : unsigned char { kLoss, kGrowth, kBoth };

struct ScaleRange {
    double from = 0;
    double to = 0;
};

class ChangeScale {
  public:
    /// A scale for all displacements, positive outwards, in millimetres. `range` is that of the change shown, for loss
    /// its amount; without one the scale begins at 0 and ends at a round number.
    ChangeScale(std::span<const double> displacements, const PalettePair& colours, std::optional<ScaleRange> range);

    ChangeKind kind() const { return kind_; }
    const ScaleRange& range() const { return range_; }
    /// "recession", "growth" or "change"
    std::string name() const;
    /// "recession, mm"
    std::string title() const { return name() + (isInMicrometres() ? ", µm" : ", mm"); }
    /// Round numbers within the range, and how they are written in the title's unit.
    std::vector<double> ticks() const;
    std::string tickText(double value) const;

    /// What is shown for a displacement: its amount, or for both directions the displacement itself.
    double shown(double displacement) const { return kind_ == ChangeKind::kLoss ? -displacement : displacement; }
    /// Where that lies on the scale, 0 at its beginning and 1 at its end.
    double place(double displacement) const { return (shown(displacement) - range_.from) / (range_.to - range_.from); }
    Colour colourAt(double place) const { return palette_.at(place); }

  private:
    double tickStep() const;
    bool isInMicrometres() const;

    ChangeKind kind_;
    Palette palette_;
    ScaleRange range_;
};

}  // namespace talvek::host
