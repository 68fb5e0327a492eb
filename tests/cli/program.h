// The command-line program as a user starts it.
#pragma once

#include <string>
#include <vector>

#include "talvek/watch/child_process.h"

namespace talvek::test {

/// The program and its arguments, ready to be started.
std::vector<std::string> programCommand(const std::vector<std::string>& arguments);

struct ProgramResult {
    host::ChildEnd end;
    /// Standard output and standard error, without carriage returns.
    std::string output;
};

/// Runs the program to its end in the working directory.
ProgramResult runProgram(const std::vector<std::string>& arguments);

/// Reads on until the output contains `text`; false when it ended before.
bool readUntil(host::ChildProcess& child, const std::string& text);

/// Splits a command line at blanks, 'what stands in quotes' being one argument.
std::vector<std::string> splitArguments(const std::string& line);

}  // namespace talvek::test
