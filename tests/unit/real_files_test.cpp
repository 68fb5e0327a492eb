// Files that scanners, modellers and exporters have made. Their folder describes each of them in a table; meshes come
// out as it says, and what does not load is refused for a reason.
#include <gtest/gtest.h>

#include <charconv>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <map>
#include <regex>
#include <sstream>

#include "Vexo_Lib/load3d.h"
#include "Vexo_Lib/wrl.h"
#include "support/error_reports.h"
#include "support/test_files.h"
#include "support/use_mesh.h"

namespace talvek::test {
namespace {

namespace fs = std::filesystem;

struct Counts {
    std::int64_t vertices;
    std::int64_t texels;
    std::int64_t faces;
};

std::int64_t numberIn(std::string text) {
    std::erase(text, ',');
    std::int64_t number = -1;
    std::from_chars(text.data(), text.data() + text.size(), number);
    return number;
}

/// The counts of every file that the folder's description gives, by path.
std::map<std::string, Counts> describedCounts(const std::string& folder) {
    const std::regex row(R"(^\| `([^`]+)` \| [^|]* \| ([\d,]+) / ([\d,]+) / ([\d,]+) \|)");
    std::map<std::string, Counts> counts;
    std::ifstream file(folder + "/README.md");
    for (std::string line; std::getline(file, line);) {
        std::smatch parts;
        if (std::regex_search(line, parts, row)) {
            counts[parts[1]] = {numberIn(parts[2]), numberIn(parts[3]), numberIn(parts[4])};
        }
    }
    return counts;
}

class RealFiles : public ::testing::Test {
  protected:
    void SetUp() override {
        folder_ = realMeshFolder();
        if (folder_.empty()) {
            GTEST_SKIP() << "There is no folder of real meshes; TALVEK_REAL_MESHES can name one.";
        }
        described_ = describedCounts(folder_);
    }

    /// Calls `use` with the path in the folder and the full path of every file of this extension.
    template <typename Use>
    void forEach(const std::string& extension, Use use) {
        for (const auto& entry : fs::recursive_directory_iterator(folder_)) {
            const std::string name = fs::relative(entry.path(), folder_).generic_string();
            if (entry.path().extension() == extension && !name.starts_with("big/")) {
                use(name, entry.path().string());
            }
        }
    }

    std::string folder_;
    std::map<std::string, Counts> described_;
};

TEST_F(RealFiles, WrlFilesHoldWhatTheirDescriptionSays) {
    int numCompared = 0;
    forEach(".wrl", [&](const std::string& name, const std::string& path) {
        ASSERT_TRUE(described_.contains(name)) << name;
        const Counts& expected = described_[name];
        CaughtReports reports;
        const auto mesh = ReadWrlFile(path.c_str(), true);
        const auto lines = reports.lines();
        ++numCompared;
        if (expected.vertices == 0 || expected.faces == 0) {
            EXPECT_EQ(mesh, nullptr) << name;
            EXPECT_TRUE(lines.back().ends_with(" doesn't have polygons ")) << name;
            return;
        }
        ASSERT_NE(mesh, nullptr) << name;
        EXPECT_EQ(mesh->numVertices, expected.vertices) << name;
        EXPECT_EQ(mesh->numTexels, expected.texels) << name;
        EXPECT_EQ(mesh->numFaces, expected.faces) << name;
    });
    EXPECT_GT(numCompared, 50);
}

TEST_F(RealFiles, AnyMeshLoadsOrIsRefusedForItsIndices) {
    int numLoaded = 0;
    int numRefused = 0;
    for (const char* extension : {".obj", ".wrl"}) {
        forEach(extension, [&](const std::string& name, const std::string& path) {
            CaughtReports reports;
            const auto mesh = LoadMeshFile(path.c_str());
            const auto lines = reports.lines();
            if (mesh == nullptr) {
                ++numRefused;
                ASSERT_FALSE(lines.empty()) << name;
                EXPECT_TRUE(lines.back().find("face index out of range in ") != std::string::npos ||
                            lines.back().ends_with(" doesn't have polygons "))
                    << name << ": " << lines.back();
                return;
            }
            ++numLoaded;
            EXPECT_TRUE(hasSoundIndices(*mesh)) << name;
            if (mesh->numFaces < 20000) {
                weatherOnce(*mesh);
            }
        });
    }
    EXPECT_GT(numLoaded, 100);
    EXPECT_GT(numRefused, 5);
    RecordProperty("loaded", numLoaded);
    RecordProperty("refused", numRefused);
    std::cout << numLoaded << " loaded, " << numRefused << " refused\n";
}

/// Whether the words that begin a record stand within a line too.
bool hasRecordsInsideLines(const std::string& path) {
    std::istringstream text(readFile(path));
    for (std::string line; std::getline(text, line);) {
        std::istringstream words(line);
        std::string word;
        words >> word;
        while (words >> word) {
            if (word == "v" || word == "vt" || word == "f") {
                return true;
            }
        }
    }
    return false;
}

TEST_F(RealFiles, ObjFilesHoldWhatTheirDescriptionSays) {
    int numCompared = 0;
    forEach(".obj", [&](const std::string& name, const std::string& path) {
        CaughtReports reports;
        const auto mesh = LoadMeshFile(path.c_str());
        // The description counts lines, the reader tokens.
        if (mesh == nullptr || fs::file_size(path) > 1000000 || hasRecordsInsideLines(path)) {
            return;
        }
        ASSERT_TRUE(described_.contains(name)) << name;
        ++numCompared;
        EXPECT_EQ(mesh->numVertices, described_[name].vertices) << name;
        EXPECT_EQ(mesh->numTexels, described_[name].texels) << name;
        EXPECT_EQ(mesh->numFaces, described_[name].faces) << name;
    });
    EXPECT_GT(numCompared, 20);
}

}  // namespace
}  // namespace talvek::test
