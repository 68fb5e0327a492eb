// The user guide's examples: each command it shows, one after the other on the example stone, prints what stands there.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string_view>

#include "cli/program.h"
#include "example_stone/carved_block.h"
#include "example_stone/mineral_map.h"
#include "support/test_files.h"

namespace talvek::test {
namespace {

struct Example {
    std::string command;
    std::string output;
};

/// The commands of all blocks marked "console", which follow a "$ ".
std::vector<Example> guideExamples() {
    std::vector<Example> examples;
    std::ifstream guide(TALVEK_USER_GUIDE);
    bool isConsole = false;
    for (std::string line; std::getline(guide, line);) {
        line = withoutCarriageReturns(line);
        if (line.starts_with("```")) {
            isConsole = line == "```console";
        } else if (isConsole && line.starts_with("$ ")) {
            examples.push_back({line.substr(2), ""});
        } else if (isConsole) {
            examples.back().output += line + "\n";
        }
    }
    return examples;
}

/// A block marked "csv NAME" is a file of that name.
void writeTables(const TempFolder& folder) {
    constexpr std::string_view kTable = "```csv ";
    std::ifstream guide(TALVEK_USER_GUIDE);
    std::string name;
    std::string content;
    for (std::string line; std::getline(guide, line);) {
        line = withoutCarriageReturns(line);
        if (line.starts_with(kTable)) {
            name = line.substr(kTable.size());
        } else if (line == "```" && !name.empty()) {
            writeFile(folder.file(name), content);
            name.clear();
            content.clear();
        } else if (!name.empty()) {
            content += line + "\n";
        }
    }
}

/// The stone is made here as the guide's first command makes it.
void makeStone(const TempFolder& folder) {
    writeFile(folder.file("stone.obj"), example::objText(example::makeCarvedBlock()));
    writeFile(folder.file("stone.bmp"), example::bitmapBytes(example::makeMineralMap()));
}

/// The files that stand beside the guide.
void copyExamples(const TempFolder& folder) {
    const std::filesystem::path guide = TALVEK_USER_GUIDE;
    for (const auto& entry : std::filesystem::directory_iterator(guide.parent_path() / "examples")) {
        std::filesystem::copy_file(entry.path(), folder.file(entry.path().filename().string()));
    }
}

TEST(UserGuide, ShowsWhatTheProgramPrints) {
    const TempFolder folder;
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(folder.path());
    makeStone(folder);
    writeTables(folder);
    copyExamples(folder);
    int numRun = 0;
    unsigned status = 0;
    for (const Example& example : guideExamples()) {
        if (example.command == "echo $?") {
            EXPECT_EQ(std::to_string(status) + "\n", example.output);
        } else if (example.command.starts_with("talvek ")) {
            const ProgramResult result = runProgram(splitArguments(example.command.substr(7)));
            status = result.end.code;
            EXPECT_EQ(result.output, example.output) << example.command;
            ++numRun;
        } else {
            EXPECT_EQ(example.command, "talvek-example-stone stone.obj");
        }
    }
    EXPECT_GT(numRun, 10);
    std::filesystem::current_path(before);
}

}  // namespace
}  // namespace talvek::test
