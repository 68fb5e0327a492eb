// The program's arguments and the commands behind them.
#pragma once

namespace talvek::host {

/// Reads the arguments and runs the command they name. Returns the exit status.
int runProgram(int argc, char** argv);

}  // namespace talvek::host
