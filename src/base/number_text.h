// How a number becomes text and back: always with the decimal point '.', whatever locale the host has set, and the same
// on every platform.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace talvek {

/// Room that any formatted number needs, in characters.
inline constexpr std::size_t kNumberTextSize = 400;

/// Writes a value as printf's "%.{decimals}f" does in the C locale, 0 to 9 decimals. `out` has kNumberTextSize
/// characters. Returns the end of the text, which is not terminated.
char* formatFixed(char* out, double value, int decimals);

/// The same text as formatFixed(out, value, 6), faster. For many at a time there is number_group.h.
char* formatFixed6(char* out, float value);

/// Writes a value as printf's "%g" does: 6 significant digits, exponents of at least two digits.
char* formatGeneral(char* out, double value);

/// Writes an integer in decimal.
char* formatInteger(char* out, std::int64_t value);

/// Reads the number at the start of a text as strtof does in the C locale, except that leading blanks are no part of
/// it: decimal and hexadecimal notation, "inf", "nan", one rounding to single precision. Returns the number of
/// characters that belong to it; 0, with `value` unchanged, when there is no number.
std::size_t parseFloat(std::string_view text, float& value);

/// The same in double precision.
std::size_t parseDouble(std::string_view text, double& value);

/// The number that a text begins with, after blanks; 0 when there is none. As atof.
double toDouble(std::string_view text);

/// The integer that a text begins with, after blanks; 0 when there is none, the nearest int when it does not fit. As
/// atoi where that is defined.
std::int32_t toInt(std::string_view text);

/// The C locale's white space.
constexpr bool isBlank(char c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

/// The nearest int, 0 for not-a-number.
std::int32_t saturateToInt(double value);

}  // namespace talvek
