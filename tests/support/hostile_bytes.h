// Damaged forms of a file that is sound.
#pragma once

#include <set>
#include <string>

namespace talvek::test {

/// Calls `use` with every prefix of the bytes, the whole included.
template <typename Use>
void forEachPrefix(const std::string& bytes, Use use) {
    for (std::size_t size = 0; size <= bytes.size(); ++size) {
        use(bytes.substr(0, size));
    }
}

/// Calls `use` with the bytes in which one is greater by one, smaller by one, 0 or 255, for each of them.
template <typename Use>
void forEachChangedByte(const std::string& bytes, Use use) {
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const char sound = bytes[i];
        std::string damaged = bytes;
        for (const char value : std::set{static_cast<char>(sound + 1), static_cast<char>(sound - 1), '\0', '\xFF'}) {
            damaged[i] = value;
            use(damaged);
        }
    }
}

}  // namespace talvek::test
