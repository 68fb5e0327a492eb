// The numbers that the program ends with, and what each means.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

namespace talvek::host {

enum ExitStatus : int {
    kExitDone = 0,
    kExitFindings = 1,
    kExitUsage = 2,
    // 10 minus the library's result code.
    kExitNoVertices = 11,
    kExitParameters = 12,
    kExitInternal = 13,
    kExitFrame = 14,
    kExitMesh = 15,
    kExitUndefinedMode = 16,
    kExitUndefinedModel = 17,
    kExitRefused = 20,
    kExitOutput = 21,
    kExitCrashed = 22,
    kExitCancelled = 130,
};

/// The exit status that stands for a result code of the library.
int exitStatusOf(std::int32_t resultCode);

/// All statuses, one line each, as the help prints them.
std::string exitStatusTable();

/// Ends a command: a message for the user, and the program's exit status.
class Failure : public std::runtime_error {
  public:
    Failure(ExitStatus status, const std::string& message) : std::runtime_error(message), status_(status) {}
    ExitStatus status() const { return status_; }

  private:
    ExitStatus status_;
};

}  // namespace talvek::host
