#include "talvek/plan/calendar_day.h"

#include <array>
#include <charconv>
#include <cstdio>

namespace talvek::host {

namespace {

/// The three numbers between two separators.
std::optional<std::array<int, 3>> threeNumbers(std::string_view text, char separator) {
    std::array<int, 3> numbers{};
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        const std::string_view part = text.substr(0, text.find(separator));
        const auto [end, error] = std::from_chars(part.data(), part.data() + part.size(), numbers[i]);
        if (part.empty() || error != std::errc() || end != part.data() + part.size()) {
            return std::nullopt;
        }
        text.remove_prefix(part.size());
        const bool isLast = i + 1 == numbers.size();
        if (isLast != text.empty()) {
            return std::nullopt;
        }
        text.remove_prefix(isLast ? 0 : 1);
    }
    return numbers;
}

}  // namespace

std::optional<std::chrono::sys_days> parseDay(std::string_view text) {
    using namespace std::chrono;
    for (const char separator : {'-', '/', '.'}) {
        const auto numbers = threeNumbers(text, separator);
        if (!numbers) {
            continue;
        }
        const auto [first, second, third] = *numbers;
        const bool isDayFirst = separator == '.';
        constexpr int kFirstYear = 1000;
        const int yearNumber = isDayFirst ? third : first;
        const year_month_day date{year(yearNumber), month(static_cast<unsigned>(second)),
                                  day(static_cast<unsigned>(isDayFirst ? first : third))};
        return yearNumber >= kFirstYear && date.ok() ? std::optional(sys_days(date)) : std::nullopt;
    }
    return std::nullopt;
}

std::string dayText(std::chrono::sys_days day) {
    const std::chrono::year_month_day date(day);
    char text[48];
    std::snprintf(text, sizeof text, "%04d-%02u-%02u", static_cast<int>(date.year()),
                  static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()));
    return text;
}

}  // namespace talvek::host
