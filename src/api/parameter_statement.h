// A line of a parameter file.
#pragma once

#include <string_view>

namespace talvek {

struct Statement {
    std::string_view key;
    std::string_view value;
};

/// Without "=" the whole line is both the key and the value.
inline Statement parseStatement(std::string_view line) {
    if (line.ends_with('\r')) {
        line.remove_suffix(1);
    }
    const std::size_t equals = line.find('=');
    const bool hasValue = equals != std::string_view::npos;
    const std::string_view rest = hasValue ? line.substr(equals + 1) : line;
    return {line.substr(0, equals), rest.substr(0, rest.find(';'))};
}

}  // namespace talvek
