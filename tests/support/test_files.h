// Files for tests: a folder that is gone afterwards, and whole files as strings.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace talvek::test {

/// A new empty folder, removed with everything in it at the end of the test.
class TempFolder {
  public:
    TempFolder();
    /// In a folder other than the system's for temporary files.
    explicit TempFolder(const std::filesystem::path& parent);
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;
    ~TempFolder();

    /// The path of a file in the folder, which need not exist.
    std::string file(std::string_view name) const { return (path_ / name).string(); }
    std::string path() const { return path_.string(); }
    /// The names of all files in the folder, sorted, with a blank between.
    std::string listing() const;

  private:
    std::filesystem::path path_;
};

/// Writes bytes as they are.
void writeFile(const std::string& path, std::string_view bytes);

/// The bytes of a file; fails the test when there is none.
std::string readFile(const std::string& path);

bool exists(const std::string& path);

/// The text without carriage returns, so that one expectation serves both platforms.
std::string withoutCarriageReturns(std::string text);

/// The text file's content with '\n' line ends.
std::string readText(const std::string& path);

/// The folder of meshes that scanners and modellers have made, which the environment variable TALVEK_REAL_MESHES names;
/// empty when it is not there.
std::string realMeshFolder();

}  // namespace talvek::test
