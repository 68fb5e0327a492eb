// Days of the calendar as tables write them.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

namespace talvek::host {

/// "2001-01-31", "2001/01/31" or "31.01.2001"; nothing for anything else, or a day that no calendar has.
std::optional<std::chrono::sys_days> parseDay(std::string_view text);

/// "2001-01-31"
std::string dayText(std::chrono::sys_days day);

}  // namespace talvek::host
