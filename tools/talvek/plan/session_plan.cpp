#include "talvek/plan/session_plan.h"

#include <charconv>
#include <numeric>
#include <span>

#include "api/session/operating_modes.h"
#include "base/number_text.h"

namespace talvek::host {

namespace {

std::string numberList(std::span<const double> values) {
    std::string list;
    for (const double value : values) {
        char digits[64];
        list.append(list.empty() ? "" : ", ").append(digits, std::to_chars(digits, digits + sizeof digits, value).ptr);
    }
    return list;
}

std::string statement(const std::string& key, const std::string& value) {
    return key + " = " + value + ";\n";
}

}  // namespace

bool SessionPlan::isOffsetting() const {
    const OperatingMode* found = operatingMode(mode);
    return found != nullptr && found->isOffsetting;
}

bool SessionPlan::needsMap() const {
    const OperatingMode* found = operatingMode(mode);
    return found != nullptr && found->needsMap;
}

bool SessionPlan::keepsVertices() const {
    const OperatingMode* found = operatingMode(mode);
    return found != nullptr && found->keepsVertices;
}

std::uint64_t SessionPlan::totalDays() const {
    return std::accumulate(epochs.begin(), epochs.end(), std::uint64_t{0},
                           [](std::uint64_t sum, const PlannedEpoch& epoch) {
                               return sum + static_cast<std::uint64_t>(saturateToInt(epoch.record.days()));
                           });
}

std::string parameterText(const SessionPlan& plan) {
    std::string text = statement("mode", std::to_string(plan.mode)) + statement("model", std::to_string(plan.model)) +
                       statement("mtl", numberList(plan.material.values)) +
                       statement("epcs", std::to_string(plan.epochs.size()));
    for (std::size_t i = 0; i < plan.epochs.size(); ++i) {
        text += statement("epc_" + std::to_string(i + 1), numberList(plan.epochs[i].record.values));
    }
    return text;
}

}  // namespace talvek::host
