#include "talvek/plan/session_plan.h"

#include <charconv>
#include <numeric>

#include "api/session/operating_modes.h"

namespace talvek::host {

namespace {

constexpr std::string_view kHead = "talvek-plan";
constexpr std::string_view kEpoch = "talvek-epoch";

template <typename Number>
void append(std::string& text, Number value) {
    char digits[64];
    text.append(" ").append(digits, std::to_chars(digits, digits + sizeof digits, value).ptr);
}

/// The numbers of a line, one after the other.
class Fields {
  public:
    explicit Fields(std::string_view text) : text_(text) {}

    template <typename Number>
    bool read(Number& value) {
        while (text_.starts_with(' ')) {
            text_.remove_prefix(1);
        }
        const auto [end, error] = std::from_chars(text_.data(), text_.data() + text_.size(), value);
        text_.remove_prefix(static_cast<std::size_t>(end - text_.data()));
        return error == std::errc();
    }

    template <typename Number, std::size_t N>
    bool read(std::array<Number, N>& values) {
        bool isWhole = true;
        for (Number& value : values) {
            isWhole = isWhole && read(value);
        }
        return isWhole;
    }

  private:
    std::string_view text_;
};

std::string_view takeLine(std::string_view& text) {
    const std::string_view line = text.substr(0, text.find('\n'));
    text.remove_prefix(std::min(line.size() + 1, text.size()));
    return line;
}

}  // namespace

bool SessionPlan::isOffsetting() const {
    const OperatingMode* row = operatingMode(mode);
    return row != nullptr && row->isOffsetting;
}

bool SessionPlan::needsMap() const {
    const OperatingMode* row = operatingMode(mode);
    return row != nullptr && row->needsMap;
}

bool SessionPlan::keepsVertices() const {
    const OperatingMode* row = operatingMode(mode);
    return row != nullptr && row->keepsVertices;
}

std::uint64_t SessionPlan::totalDays() const {
    return std::accumulate(epochs.begin(), epochs.end(), std::uint64_t{0},
                           [](std::uint64_t sum, const PlannedEpoch& epoch) { return sum + epoch.days; });
}

std::string writePlan(const SessionPlan& plan) {
    std::string text(kHead);
    append(text, plan.mode);
    append(text, plan.model);
    for (const float value : plan.material) {
        append(text, value);
    }
    text += '\n';
    for (const PlannedEpoch& epoch : plan.epochs) {
        text += kEpoch;
        append(text, epoch.days);
        for (const float value : epoch.environment) {
            append(text, value);
        }
        text += '\n';
    }
    return text;
}

std::optional<SessionPlan> readPlan(std::string_view text) {
    std::optional<SessionPlan> plan;
    while (!text.empty()) {
        const std::string_view line = takeLine(text);
        if (line.starts_with(kHead)) {
            plan.emplace();
            Fields fields(line.substr(kHead.size()));
            if (!fields.read(plan->mode) || !fields.read(plan->model) || !fields.read(plan->material)) {
                return std::nullopt;
            }
        } else if (plan && line.starts_with(kEpoch)) {
            Fields fields(line.substr(kEpoch.size()));
            PlannedEpoch& epoch = plan->epochs.emplace_back();
            if (!fields.read(epoch.days) || !fields.read(epoch.environment)) {
                return std::nullopt;
            }
        }
    }
    return plan;
}

}  // namespace talvek::host
