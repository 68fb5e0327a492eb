#include "base/number_text.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>

namespace talvek {

namespace {

/// The texts of the numbers below 1000, four characters each. All four are copied; what follows overwrites those that
/// are too many.
struct SmallNumbers {
    std::array<char, 4000> threeDigits{};
    /// Without the zeros in front, but with a point behind.
    std::array<char, 4000> shortest{};
    std::array<std::uint8_t, 1000> lengthOfShortest{};
};

constexpr SmallNumbers kSmallNumbers = [] {
    SmallNumbers texts;
    for (std::size_t i = 0; i < 1000; ++i) {
        const char digits[] = {static_cast<char>('0' + i / 100), static_cast<char>('0' + i / 10 % 10),
                               static_cast<char>('0' + i % 10), '.'};
        const std::size_t zeros = i < 10 ? 2 : i < 100 ? 1 : 0;
        for (std::size_t k = 0; k < 4; ++k) {
            texts.threeDigits[4 * i + k] = digits[k];
            texts.shortest[4 * i + k] = digits[std::min<std::size_t>(k + zeros, 3)];
        }
        texts.lengthOfShortest[i] = static_cast<std::uint8_t>(3 - zeros);
    }
    return texts;
}();

/// Three digits of a number below 1000.
char* putThreeDigits(char* out, std::uint32_t value) {
    std::memcpy(out, &kSmallNumbers.threeDigits[std::size_t{4} * value], 4);
    return out + 3;
}

/// The same without the zeros in front. A point stands behind what is returned.
char* putUpToThreeDigits(char* out, std::uint32_t value) {
    std::memcpy(out, &kSmallNumbers.shortest[std::size_t{4} * value], 4);
    return out + kSmallNumbers.lengthOfShortest[value];
}

constexpr std::uint32_t kTenToThe9 = 1000000000;

/// A number below 10^9.
char* putUpToNineDigits(char* out, std::uint32_t value) {
    if (value < 1000) {
        return putUpToThreeDigits(out, value);
    }
    const std::uint32_t thousands = value / 1000;
    if (thousands < 1000) {
        out = putUpToThreeDigits(out, thousands);
    } else {
        out = putUpToThreeDigits(out, thousands / 1000);
        out = putThreeDigits(out, thousands % 1000);
    }
    return putThreeDigits(out, value % 1000);
}

char* putInteger(char* out, std::int64_t value) {
    if (value >= 0 && value < kTenToThe9) {
        return putUpToNineDigits(out, static_cast<std::uint32_t>(value));
    }
    return std::to_chars(out, out + kNumberTextSize, value).ptr;
}

char* putText(char* out, std::string_view text) {
    std::memcpy(out, text.data(), text.size());
    return out + text.size();
}

char* putNotFinite(char* out, double value) {
    if (std::signbit(value)) {
        *out++ = '-';
    }
    return putText(out, std::isnan(value) ? "nan" : "inf");
}

char* putFixed6(char* out, float value) {
    // A float has 24 significant bits and 10^6 has 14 beside its powers of two, so the product is exact; adding 2^52
    // rounds it to the nearest integer, ties to even, which is how printf rounds, and leaves it in the lowest bits.
    constexpr float kLargest = 2147483648.0F;
    constexpr double kRounder = 4503599627370496.0;
    const float magnitude = std::fabs(value);
    if (!(magnitude < kLargest)) {
        return formatFixed(out, static_cast<double>(value), 6);
    }
    const double rounded = static_cast<double>(magnitude) * 1e6 + kRounder;
    const std::uint64_t scaled = std::bit_cast<std::uint64_t>(rounded) - std::bit_cast<std::uint64_t>(kRounder);
    const std::uint64_t whole = scaled / 1000000;
    const auto fraction = static_cast<std::uint32_t>(scaled - whole * 1000000);
    *out = '-';
    out += std::signbit(value) ? 1 : 0;
    if (whole < 1000) {
        out = putUpToThreeDigits(out, static_cast<std::uint32_t>(whole)) + 1;
    } else {
        out = putInteger(out, static_cast<std::int64_t>(whole));
        *out++ = '.';
    }
    out = putThreeDigits(out, fraction / 1000);
    return putThreeDigits(out, fraction % 1000);
}

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

bool isHexDigit(char c) {
    return isDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

/// Tells whether a number that no floating-point type can hold is too small (and not too large): its first digit other
/// than 0 then stands, with the exponent taken in, behind the point.
bool isBelowOne(std::string_view number, bool isHex) {
    std::int64_t exponent = 0;
    const std::size_t mark = number.find_first_of(isHex ? "pP" : "eE");
    if (mark != std::string_view::npos) {
        exponent = toInt(number.substr(mark + 1));
    }
    const std::string_view digits = number.substr(0, mark);
    const std::size_t first = std::min(digits.find_first_not_of("0."), digits.size());
    const std::size_t point = std::min(digits.find('.'), digits.size());
    const std::int64_t place = first < point ? static_cast<std::int64_t>(point - first)
                                             : static_cast<std::int64_t>(point) - static_cast<std::int64_t>(first) + 1;
    // The exponent of a hexadecimal number counts bits, four to a digit.
    return place * (isHex ? 4 : 1) + exponent <= 0;
}

bool startsHexadecimal(std::string_view text) {
    if (text.size() < 3 || text[0] != '0' || (text[1] != 'x' && text[1] != 'X')) {
        return false;
    }
    return isHexDigit(text[2]) || (text[2] == '.' && text.size() > 3 && isHexDigit(text[3]));
}

template <typename T>
std::size_t parseNumber(std::string_view text, T& value) {
    const bool hasSign = !text.empty() && (text[0] == '+' || text[0] == '-');
    const std::string_view unsignedText = text.substr(hasSign ? 1 : 0);
    if (unsignedText.empty() || unsignedText[0] == '-') {
        return 0;
    }
    const bool isHex = startsHexadecimal(unsignedText);
    const std::string_view digits = unsignedText.substr(isHex ? 2 : 0);
    T magnitude = 0;
    const std::from_chars_result result = std::from_chars(digits.data(), digits.data() + digits.size(), magnitude,
                                                          isHex ? std::chars_format::hex : std::chars_format::general);
    if (result.ec == std::errc::invalid_argument) {
        return 0;
    }
    if (result.ec == std::errc::result_out_of_range) {
        const std::string_view number = digits.substr(0, static_cast<std::size_t>(result.ptr - digits.data()));
        magnitude = isBelowOne(number, isHex) ? T{0} : std::numeric_limits<T>::infinity();
    }
    value = hasSign && text[0] == '-' ? -magnitude : magnitude;
    return static_cast<std::size_t>(result.ptr - text.data());
}

std::string_view withoutLeadingBlanks(std::string_view text) {
    while (!text.empty() && isBlank(text.front())) {
        text.remove_prefix(1);
    }
    return text;
}

}  // namespace

char* formatFixed(char* out, double value, int decimals) {
    if (!std::isfinite(value)) {
        return putNotFinite(out, value);
    }
    return std::to_chars(out, out + kNumberTextSize, value, std::chars_format::fixed, decimals).ptr;
}

char* formatFixed6(char* out, float value) {
    return putFixed6(out, value);
}

char* formatFixed6Triple(char* out, const float* values) {
    for (int i = 0; i < 3; ++i) {
        *out++ = ' ';
        out = putFixed6(out, values[i]);
    }
    return out;
}

char* formatGeneral(char* out, double value) {
    if (!std::isfinite(value)) {
        return putNotFinite(out, value);
    }
    constexpr int kSignificantDigits = 6;
    return std::to_chars(out, out + kNumberTextSize, value, std::chars_format::general, kSignificantDigits).ptr;
}

char* formatInteger(char* out, std::int64_t value) {
    return putInteger(out, value);
}

char* formatFromOneTriple(char* out, const std::int32_t* values) {
    for (int i = 0; i < 3; ++i) {
        *out++ = ' ';
        out = putInteger(out, std::int64_t{values[i]} + 1);
    }
    return out;
}

std::size_t parseFloat(std::string_view text, float& value) {
    return parseNumber(text, value);
}

std::size_t parseDouble(std::string_view text, double& value) {
    return parseNumber(text, value);
}

double toDouble(std::string_view text) {
    double value = 0;
    parseDouble(withoutLeadingBlanks(text), value);
    return value;
}

std::int32_t toInt(std::string_view text) {
    text = withoutLeadingBlanks(text);
    const bool isNegative = !text.empty() && text[0] == '-';
    if (isNegative || (!text.empty() && text[0] == '+')) {
        text.remove_prefix(1);
    }
    constexpr std::int64_t kLargest = std::numeric_limits<std::int32_t>::max();
    const std::int64_t limit = isNegative ? kLargest + 1 : kLargest;
    std::int64_t magnitude = 0;
    for (const char c : text) {
        if (!isDigit(c)) {
            break;
        }
        magnitude = std::min(magnitude * 10 + (c - '0'), limit);
    }
    return static_cast<std::int32_t>(isNegative ? -magnitude : magnitude);
}

std::int32_t saturateToInt(double value) {
    if (std::isnan(value)) {
        return 0;
    }
    constexpr double kSmallest = std::numeric_limits<std::int32_t>::min();
    constexpr double kLargest = std::numeric_limits<std::int32_t>::max();
    return static_cast<std::int32_t>(std::clamp(value, kSmallest, kLargest));
}

}  // namespace talvek
