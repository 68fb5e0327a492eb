// The formats of the library's messages, expanded the same way in every locale and on every platform.
#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <span>
#include <string_view>
#include <variant>

namespace talvek {

using MessageArgument = std::variant<std::int32_t, double, std::string_view>;

/// Writes `format` with its arguments into `buffer`, NUL-terminated and cut where the buffer ends. The conversions
/// "%s" (text), "%d" and "%i" (integer) and "%.Nf" (floating point, N one digit) take one argument each, of their type.
void formatMessage(std::span<char> buffer, std::string_view format, std::initializer_list<MessageArgument> arguments);

/// Expands a text that stands where a format would, but has no arguments: "%%" gives "%", every other character stands
/// for itself. `out` has room for the text and may be the text's own memory. Returns the length of the result.
std::size_t expandWithoutArguments(std::string_view text, char* out);

}  // namespace talvek
