// talvek: weathers a mesh from the command line.
#include "talvek/command_line.h"

int main(int argc, char** argv) {
    return talvek::host::runProgram(argc, argv);
}
