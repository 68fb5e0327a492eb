// The units in which people give what the models take.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace talvek::host {

/// 25 degrees Celsius and 1 atmosphere (101325 Pa), at which monitoring stations state volumes: RT/p, in cm3/mol, with
/// the gas constant of CODATA 2018, 8.314462618 J/(mol K).
inline constexpr double kMolarVolume = 8.314462618 * 298.15 / 101325 * 1e6;
/// In g/mol, from the standard atomic weights of IUPAC 2021 (S 32.06, N 14.007, O 15.999).
inline constexpr double kSulphurMass = 32.06;
inline constexpr double kSo2Mass = kSulphurMass + 2 * 15.999;
inline constexpr double kNitrogenMass = 14.007;
inline constexpr double kNo2Mass = kNitrogenMass + 2 * 15.999;
/// The year of the rain and of epochs that are given in years.
inline constexpr double kYearDays = 365;

/// A unit of one of an epoch's values.
struct Unit {
    /// As it stands behind a number: "ug/m3".
    std::string_view name;
    /// As it stands behind the value's name in a table's column: "so2_ug_m3".
    std::string_view column;
    /// How many of the model's own units it has.
    double factor;
};

/// What an epoch's value is measured in, by its number in the interface: SO2, NO2, Rv, RpH.
struct ValueUnits {
    /// The model's own unit.
    std::string_view own;
    const Unit* units;
    std::size_t count;
    /// A larger number without a unit is in another one.
    double largest;
    /// The one it is in then.
    std::size_t likely;
};

const ValueUnits& unitsOfValue(std::size_t slot);

/// Splits "10 ug/m3" into the number and its unit, "ug/m3"; the signs for micro and cube may be used. Nothing where no
/// finite number stands in front.
struct Measured {
    double number = 0;
    std::string numberText;
    std::string unit;
};
std::optional<Measured> splitMeasured(std::string_view text);

/// The number in the model's own unit; nothing for a unit that the value does not have.
std::optional<double> inOwnUnit(std::size_t slot, const Measured& measured);

/// Why a number without a unit cannot be in the model's own: "10 ug/m3 would be 1.561e-13 mol/cm3; say 10ug/m3 or
/// 10ppb". Empty where it can.
std::string otherUnitText(std::size_t slot, double number, const std::string& numberText);

/// "mol/cm3, ug/m3, ppb, ugS/m3"
std::string unitNames(std::size_t slot);

/// A whole number in decimal notation: "10", "010", "1e3".
std::optional<std::int64_t> wholeNumber(std::string_view text);

}  // namespace talvek::host
