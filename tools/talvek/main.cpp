// talvek: weathers a mesh from the command line.
#include "talvek/commands/command_line.h"

int main(int argc, char** argv) {
    return talvek::host::runProgram(argc, argv);
}
