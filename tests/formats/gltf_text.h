// Small glTF and GLB files.
#pragma once

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

namespace talvek::test {

/// Bytes of numbers as the machine has them, which is as the format wants them.
template <typename T>
std::string rawBytes(const std::vector<T>& values) {
    return {reinterpret_cast<const char*>(values.data()), values.size() * sizeof(T)};
}

/// A GLB file of a description and bytes.
inline std::string glb(std::string description, std::string bytes) {
    description.resize((description.size() + 3) / 4 * 4, ' ');
    bytes.resize((bytes.size() + 3) / 4 * 4, '\0');
    const auto word = [](std::size_t value) {
        return rawBytes(std::vector<std::uint32_t>{static_cast<std::uint32_t>(value)});
    };
    return "glTF" + word(2) + word(28 + description.size() + bytes.size()) + word(description.size()) + "JSON" +
           description + word(bytes.size()) + std::string("BIN\0", 4) + bytes;
}

}  // namespace talvek::test
