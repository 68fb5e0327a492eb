// Names of files as the program gets them, and as the standard library's file functions want them.
#pragma once

#include <filesystem>
#include <string>

namespace talvek::host {

/// On Windows this program's text is UTF-8, whatever the C++ runtime takes narrow characters for.
inline std::filesystem::path pathOf(const std::string& name) {
#ifdef _WIN32
    return {std::u8string(name.begin(), name.end())};
#else
    return {name};
#endif
}

inline std::string nameOf(const std::filesystem::path& path) {
#ifdef _WIN32
    const std::u8string name = path.u8string();
    return {name.begin(), name.end()};
#else
    return path.string();
#endif
}

}  // namespace talvek::host
