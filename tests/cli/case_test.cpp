// One line, one case: arguments, exit status and what has to come of it. The cases stand in the .txt files of this
// folder:
//
//     Name | exit status | arguments [&& arguments ...] | expectation [| expectation ...]
//
// Each case finds the files of writeFixtures in a folder of its own. Commands joined by && run one after the other;
// all but the last have to succeed. Expectations:
//
//     TEXT               the last command's output contains the text
//     not: TEXT          it does not
//     is: TEXT           it is just this line
//     file: NAME         the file is there, at any later place in the line with   : TEXT   contains the text
//     absent: NAME       no such file
//     same: A B          the two files are equal
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "cli/fixtures.h"
#include "cli/program.h"

namespace talvek::test {
namespace {

namespace fs = std::filesystem;

struct Case {
    std::string name;
    unsigned status = 0;
    std::vector<std::string> commands;
    std::vector<std::string> expectations;
};

std::vector<std::string> split(const std::string& text, const std::string& separator) {
    std::vector<std::string> parts;
    std::size_t begin = 0;
    for (std::size_t end = 0; end != std::string::npos; begin = end + separator.size()) {
        end = text.find(separator, begin);
        parts.push_back(text.substr(begin, end == std::string::npos ? end : end - begin));
        const std::size_t first = parts.back().find_first_not_of(' ');
        const std::size_t last = parts.back().find_last_not_of(' ');
        parts.back() = first == std::string::npos ? "" : parts.back().substr(first, last - first + 1);
    }
    return parts;
}

/// A line that is no case ends the program: a mistyped case would otherwise be a case less.
Case parseCase(const std::string& line) {
    const std::vector<std::string> fields = split(line, " | ");
    if (fields.size() < 4) {
        std::fprintf(stderr, "not a case: %s\n", line.c_str());
        std::exit(EXIT_FAILURE);
    }
    return {fields[0],
            static_cast<unsigned>(std::stoul(fields[1])),
            split(fields[2], " && "),
            {fields.begin() + 3, fields.end()}};
}

std::vector<Case> readCases() {
    std::vector<Case> cases;
    for (const fs::directory_entry& entry : fs::directory_iterator(TALVEK_CLI_CASES)) {
        std::ifstream file(entry.path());
        for (std::string line; entry.path().extension() == ".txt" && std::getline(file, line);) {
            line = withoutCarriageReturns(line);
            if (!line.empty() && line[0] != '#') {
                cases.push_back(parseCase(line));
            }
        }
    }
    return cases;
}

void checkFile(const std::string& expectation) {
    const std::vector<std::string> parts = split(expectation, " : ");
    ASSERT_TRUE(exists(parts[0])) << parts[0];
    if (parts.size() > 1) {
        EXPECT_NE(readText(parts[0]).find(parts[1]), std::string::npos) << readText(parts[0]);
    }
}

void checkExpectation(const std::string& expectation, const std::string& output) {
    const std::size_t colon = expectation.find(": ");
    const std::string kind = expectation.substr(0, colon);
    const std::string rest = colon == std::string::npos ? "" : expectation.substr(colon + 2);
    if (kind == "not") {
        EXPECT_EQ(output.find(rest), std::string::npos) << output;
    } else if (kind == "is") {
        EXPECT_EQ(output, rest + "\n");
    } else if (kind == "file") {
        checkFile(rest);
    } else if (kind == "absent") {
        EXPECT_FALSE(exists(rest));
    } else if (kind == "same") {
        const std::vector<std::string> names = splitArguments(rest);
        EXPECT_EQ(readFile(names.at(0)), readFile(names.at(1)));
    } else {
        EXPECT_NE(output.find(expectation), std::string::npos) << "misses: " << expectation << "\nin: " << output;
    }
}

class CommandLine : public ::testing::TestWithParam<Case> {
  protected:
    void SetUp() override {
        writeFixtures(folder_);
        fs::current_path(folder_.path());
    }
    void TearDown() override { fs::current_path(fs::temp_directory_path()); }

    TempFolder folder_;
};

TEST_P(CommandLine, DoesAsTheCaseSays) {
    const Case& wanted = GetParam();
    ProgramResult result;
    for (std::size_t i = 0; i < wanted.commands.size(); ++i) {
        result = runProgram(splitArguments(wanted.commands[i]));
        const unsigned expected = i + 1 < wanted.commands.size() ? 0 : wanted.status;
        ASSERT_TRUE(result.end.isRegular) << result.end.describe() << "\n" << result.output;
        ASSERT_EQ(result.end.code, expected) << wanted.commands[i] << "\n" << result.output;
    }
    for (const std::string& expectation : wanted.expectations) {
        checkExpectation(expectation, result.output);
    }
    EXPECT_EQ(folder_.listing().find(".tmp"), std::string::npos) << folder_.listing();
}

INSTANTIATE_TEST_SUITE_P(Cases, CommandLine, ::testing::ValuesIn(readCases()),
                         [](const ::testing::TestParamInfo<Case>& shown) { return shown.param.name; });

void PrintTo(const Case& shown, std::ostream* out) {
    *out << shown.name;
}

}  // namespace
}  // namespace talvek::test
