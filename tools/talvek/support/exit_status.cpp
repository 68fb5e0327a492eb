#include "talvek/support/exit_status.h"

#include <cstdio>

#include "talvek.h"

namespace talvek::host {

namespace {

constexpr int kResultBase = 10;
static_assert(kExitNoVertices == kResultBase - TALVEK_ERROR_NO_VERTICES);
static_assert(kExitUndefinedModel == kResultBase - TALVEK_ERROR_UNDEFINED_MODEL);

struct StatusText {
    ExitStatus status;
    const char* text;
};

constexpr StatusText kTable[] = {
    {kExitDone, "done; everything that was asked for is there"},
    {kExitFindings, "talvek check or verify found something"},
    {kExitUsage, "the command line is wrong"},
    {kExitNoVertices, "a frame holds no vertices"},
    {kExitParameters, "a value is out of range, or a parameter file cannot be read or written"},
    {kExitInternal, "the library was not given its parameters (an error in this program)"},
    {kExitFrame, "a frame is missing, incomplete or not readable"},
    {kExitMesh, "the mesh cannot be loaded or worked with"},
    {kExitUndefinedMode, "the operating mode is not defined"},
    {kExitUndefinedModel, "the weathering model is not defined in this operating mode"},
    {kExitRefused, "the run was refused because it could not have worked"},
    {kExitOutput, "a file cannot be created, or the disk has no room for the frames"},
    {kExitCrashed, "the simulation ended unexpectedly"},
    {kExitCancelled, "cancelled (Ctrl-C); the frames that are there are whole"},
};

}  // namespace

int exitStatusOf(std::int32_t resultCode) {
    return resultCode == TALVEK_OK ? kExitDone : kResultBase - resultCode;
}

std::string exitStatusTable() {
    std::string table = "Exit status:\n";
    for (const StatusText& row : kTable) {
        char line[128];
        std::snprintf(line, sizeof line, "  %3d  %s\n", static_cast<int>(row.status), row.text);
        table += line;
    }
    return table;
}

}  // namespace talvek::host
