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

/// The name of a file in a folder, divided as the user would write it on every platform.
inline std::string fileIn(const std::string& folder, const std::string& name) {
    const bool isDivided =
        folder.ends_with('/') || folder.ends_with(static_cast<char>(std::filesystem::path::preferred_separator));
    return folder + (isDivided ? "" : "/") + name;
}

}  // namespace talvek::host
