#include "cli/program.h"

#include <array>

#include "support/test_files.h"

namespace talvek::test {

std::vector<std::string> programCommand(const std::vector<std::string>& arguments) {
    std::vector<std::string> command = {TALVEK_PROGRAM};
    command.insert(command.end(), arguments.begin(), arguments.end());
    return command;
}

ProgramResult runProgram(const std::vector<std::string>& arguments) {
    host::ChildProcess child(programCommand(arguments), host::ChildErrors::kWithOutput);
    ProgramResult result;
    std::array<char, 4096> piece{};
    while (const std::size_t got = child.readOutput(piece.data(), piece.size())) {
        result.output.append(piece.data(), got);
    }
    result.end = child.wait();
    result.output = withoutCarriageReturns(std::move(result.output));
    return result;
}

bool readUntil(host::ChildProcess& child, const std::string& text) {
    std::string output;
    char c = 0;
    while (child.readOutput(&c, 1) == 1) {
        output += c;
        if (output.ends_with(text)) {
            return true;
        }
    }
    return false;
}

std::vector<std::string> splitArguments(const std::string& line) {
    std::vector<std::string> arguments;
    bool isQuoted = false;
    bool isBegun = false;
    for (const char c : line) {
        if (c == '\'') {
            isQuoted = !isQuoted;
        }
        if (c == ' ' && !isQuoted) {
            isBegun = false;
            continue;
        }
        if (!isBegun) {
            arguments.emplace_back();
            isBegun = true;
        }
        if (c != '\'') {
            arguments.back() += c;
        }
    }
    return arguments;
}

}  // namespace talvek::test
