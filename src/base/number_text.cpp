#include "base/number_text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>

#include "base/number_group.h"

namespace talvek {

namespace {

/// A number below kNumNumberStarts, without a point.
char* putShortInteger(char* out, std::uint32_t value) {
    return putNumberStart(out, value) - 1;
}

/// A number below 10^6 times kNumNumberStarts.
char* putLongInteger(char* out, std::uint32_t value) {
    if (value < kNumNumberStarts) {
        return putShortInteger(out, value);
    }
    const std::uint32_t thousands = value / 1000;
    if (thousands < kNumNumberStarts) {
        out = putShortInteger(out, thousands);
    } else {
        out = putThreeDigits(putShortInteger(out, thousands / 1000), thousands % 1000);
    }
    return putThreeDigits(out, value % 1000);
}

char* putInteger(char* out, std::int64_t value) {
    if (value >= 0 && value < std::int64_t{kNumNumberStarts} * 1000000) {
        return putLongInteger(out, static_cast<std::uint32_t>(value));
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
    const float magnitude = std::fabs(value);
    if (!(magnitude < kMillionthsLimit)) {
        return formatFixed(out, static_cast<double>(value), 6);
    }
    const std::uint64_t scaled = millionths(magnitude);
    const std::uint64_t whole = scaled / 1000000;
    const auto fraction = static_cast<std::uint32_t>(scaled - whole * 1000000);
    *out = '-';
    out = putInteger(out + (std::signbit(value) ? 1 : 0), static_cast<std::int64_t>(whole));
    *out++ = '.';
    return putThreeDigits(putThreeDigits(out, fraction / 1000), fraction % 1000);
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
