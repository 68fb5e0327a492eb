// The lines that the library prints in a child process, taken apart and passed on.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "base/system.h"

namespace talvek::host {

class LibraryLines {
  public:
    using Handler = std::function<void(std::string_view line)>;

    /// Lines go to the file `log`, unless it is empty, to standard output if `isVerbose`, and to the handler. Throws
    /// Failure when the file cannot be created.
    LibraryLines(const std::string& log, bool isVerbose, Handler handler);

    /// Takes the next piece of output, wherever it begins and ends. Throws Failure when the file cannot be written.
    void feed(std::string_view piece);

  private:
    void passOn(std::string_view line);

    std::string log_;
    system::File file_;
    bool isVerbose_;
    Handler handler_;
    std::string begun_;
};

}  // namespace talvek::host
