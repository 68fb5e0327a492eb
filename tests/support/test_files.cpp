#include "support/test_files.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <random>
#include <vector>

#include "base/system.h"

namespace talvek::test {

namespace fs = std::filesystem;

TempFolder::TempFolder() : TempFolder(fs::temp_directory_path()) {}

TempFolder::TempFolder(const fs::path& parent) {
    std::random_device random;
    do {
        path_ = parent / ("talvek-test-" + std::to_string(random()));
    } while (!fs::create_directory(path_));
}

TempFolder::~TempFolder() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
}

std::string TempFolder::listing() const {
    std::vector<std::string> names;
    for (const fs::directory_entry& entry : fs::directory_iterator(path_)) {
        names.push_back(entry.path().filename().string());
    }
    std::ranges::sort(names);
    std::string joined;
    for (const std::string& name : names) {
        joined += (joined.empty() ? "" : " ") + name;
    }
    return joined;
}

void writeFile(const std::string& path, std::string_view bytes) {
    std::ofstream file(path, std::ios::binary);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    ASSERT_TRUE(file.flush()) << path;
}

std::string readFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    EXPECT_TRUE(file.is_open()) << path;
    std::string bytes;
    char piece[65536];
    while (file.read(piece, sizeof piece) || file.gcount() > 0) {
        bytes.append(piece, static_cast<std::size_t>(file.gcount()));
    }
    return bytes;
}

bool exists(const std::string& path) {
    // The C++ runtime may take a narrow name for something else than the system does.
    return system::kindOf(path.c_str()) != system::FileKind::kAbsent;
}

std::string withoutCarriageReturns(std::string text) {
    std::erase(text, '\r');
    return text;
}

std::string readText(const std::string& path) {
    return withoutCarriageReturns(readFile(path));
}

std::string realMeshFolder() {
    const char* folder = std::getenv("TALVEK_REAL_MESHES");
    return folder != nullptr && fs::is_directory(folder) ? folder : std::string();
}

}  // namespace talvek::test
