// How the library names itself.
#pragma once

#include <string>
#include <string_view>

#include "talvek.h"

namespace talvek {

inline constexpr std::string_view kEngineName = "Talvek Engine";

/// "v " and the version, the minor number in two digits: "v 2.02".
inline std::string engineVersion() {
    return "v " + std::to_string(TALVEK_VERSION_MAJOR) + (TALVEK_VERSION_MINOR < 10 ? ".0" : ".") +
           std::to_string(TALVEK_VERSION_MINOR);
}

inline std::string engineNameAndVersion(std::string_view separator) {
    return std::string(kEngineName).append(separator).append(engineVersion());
}

}  // namespace talvek
