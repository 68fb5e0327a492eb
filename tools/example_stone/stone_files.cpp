#include "example_stone/stone_files.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <string_view>

namespace talvek::example {

namespace {

constexpr std::string_view kObjExtension = ".obj";

char lowerCase(char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

}  // namespace

bool isObjName(const std::string& name) {
    return name.size() > kObjExtension.size() &&
           std::equal(kObjExtension.rbegin(), kObjExtension.rend(), name.rbegin(),
                      [](char wanted, char letter) { return wanted == lowerCase(letter); });
}

std::string mapFileName(const std::string& objName) {
    return objName.substr(0, objName.rfind('.')) + ".bmp";
}

bool writeFile(const std::string& name, const std::string& bytes) {
    std::FILE* file = std::fopen(name.c_str(), "wb");
    if (file == nullptr) {
        return false;
    }
    const bool isWritten = std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
    // The last bytes may still be on their way: whether they arrived is known only after closing.
    return std::fclose(file) == 0 && isWritten;
}

}  // namespace talvek::example
