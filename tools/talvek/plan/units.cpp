#include "talvek/plan/units.h"

#include <array>
#include <cmath>

#include "base/number_text.h"
#include "talvek/support/messages.h"

namespace talvek::host {

namespace {

/// Micrograms in a cubic metre, of a substance of this molar mass, in moles in a cubic centimetre.
constexpr double fromMicrograms(double molarMass) {
    return 1e-12 / molarMass;
}

/// Parts in 10^9 by volume.
constexpr double kFromPpb = 1e-9 / kMolarVolume;
constexpr double kFromMillimetres = 1e-3;

constexpr std::array<Unit, 4> kSo2Units = {{{"mol/cm3", "so2", 1},
                                            {"ug/m3", "so2_ug_m3", fromMicrograms(kSo2Mass)},
                                            {"ppb", "so2_ppb", kFromPpb},
                                            {"ugS/m3", "so2_ugS_m3", fromMicrograms(kSulphurMass)}}};
constexpr std::array<Unit, 4> kNo2Units = {{{"mol/cm3", "no2", 1},
                                            {"ug/m3", "no2_ug_m3", fromMicrograms(kNo2Mass)},
                                            {"ppb", "no2_ppb", kFromPpb},
                                            {"ugN/m3", "no2_ugN_m3", fromMicrograms(kNitrogenMass)}}};
constexpr std::array<Unit, 4> kRainUnits = {
    {{"m", "rv", 1}, {"mm", "rain_mm_year", kFromMillimetres}, {"m/year", "", 1}, {"mm/year", "", kFromMillimetres}}};
constexpr std::array<Unit, 2> kAcidityUnits = {{{"pH", "rph", 1}, {"", "ph", 1}}};

// Air of which a ten-thousandth part is a gas kills within minutes, and nowhere on Earth does a year bring 50 m of
// rain.
constexpr double kMostGas = 1e-4 / kMolarVolume;
constexpr double kMostRain = 50;

constexpr std::array<ValueUnits, 4> kValues = {{{"mol/cm3", kSo2Units.data(), kSo2Units.size(), kMostGas, 1},
                                                {"mol/cm3", kNo2Units.data(), kNo2Units.size(), kMostGas, 1},
                                                {"m/year", kRainUnits.data(), kRainUnits.size(), kMostRain, 1},
                                                {"pH", kAcidityUnits.data(), kAcidityUnits.size(), HUGE_VAL, 0}}};

constexpr std::size_t kRainSlot = 2;

void replaceAll(std::string& text, std::string_view from, std::string_view to) {
    for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size())) {
        text.replace(at, from.size(), to);
    }
}

std::string_view trimmed(std::string_view text) {
    while (!text.empty() && isBlank(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && isBlank(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

}  // namespace

const ValueUnits& unitsOfValue(std::size_t slot) {
    return kValues[slot];
}

std::optional<Measured> splitMeasured(std::string_view text) {
    text = trimmed(text);
    Measured measured;
    const std::string_view unsignedText = text.starts_with('+') ? text.substr(1) : text;
    const std::size_t length = parseDouble(unsignedText, measured.number);
    if (length == 0 || !std::isfinite(measured.number)) {
        return std::nullopt;
    }
    measured.numberText = unsignedText.substr(0, length);
    measured.unit = trimmed(unsignedText.substr(length));
    // The micro sign, the Greek letter, and the raised three.
    replaceAll(measured.unit, "\xC2\xB5", "u");
    replaceAll(measured.unit, "\xCE\xBC", "u");
    replaceAll(measured.unit, "\xC2\xB3", "3");
    return measured;
}

std::optional<double> inOwnUnit(std::size_t slot, const Measured& measured) {
    const ValueUnits& value = kValues[slot];
    for (std::size_t i = 0; i < value.count; ++i) {
        if (measured.unit == value.units[i].name) {
            return measured.number * value.units[i].factor;
        }
    }
    return std::nullopt;
}

std::string otherUnitText(std::size_t slot, double number, const std::string& numberText) {
    const ValueUnits& value = kValues[slot];
    if (number <= value.largest) {
        return {};
    }
    const Unit& likely = value.units[value.likely];
    const std::string converted = briefNumber(number * likely.factor);
    if (slot == kRainSlot) {
        return numberText + " mm a year would be " + converted + " m; say " + numberText + "mm";
    }
    return numberText + " " + std::string(likely.name) + " would be " + converted + " " + std::string(value.own) +
           "; say " + numberText + std::string(likely.name) + " or " + numberText + "ppb";
}

std::string unitNames(std::size_t slot) {
    std::string names;
    for (std::size_t i = 0; i < kValues[slot].count; ++i) {
        const std::string_view name = kValues[slot].units[i].name;
        names.append(names.empty() || name.empty() ? "" : ", ").append(name);
    }
    return names;
}

std::optional<std::int64_t> wholeNumber(std::string_view text) {
    const std::optional<Measured> measured = splitMeasured(text);
    constexpr double kLargest = 9e15;
    if (!measured || !measured->unit.empty() || measured->numberText.find_first_of("xX") != std::string::npos ||
        std::abs(measured->number) > kLargest || std::floor(measured->number) != measured->number) {
        return std::nullopt;
    }
    return static_cast<std::int64_t>(measured->number);
}

}  // namespace talvek::host
