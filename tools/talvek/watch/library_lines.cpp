#include "talvek/watch/library_lines.h"

#include <utility>

#include "talvek/support/exit_status.h"

namespace talvek::host {

LibraryLines::LibraryLines(const std::string& log, bool isVerbose, Handler handler)
    : log_(log), isVerbose_(isVerbose), handler_(std::move(handler)) {
    if (!log_.empty()) {
        file_ = system::File::openForWriting(log_.c_str());
        if (!file_.isOpen()) {
            throw Failure(kExitOutput, log_ + ": the file for the library's lines cannot be created");
        }
    }
}

void LibraryLines::feed(std::string_view piece) {
    for (const char c : piece) {
        if (c == '\n') {
            passOn(begun_);
            begun_.clear();
        } else if (c != '\r') {
            begun_ += c;
        }
    }
}

void LibraryLines::passOn(std::string_view line) {
    if (file_.isOpen() &&
        !(file_.write(line.data(), line.size()) && file_.write(system::kLineEnd.data(), system::kLineEnd.size()))) {
        throw Failure(kExitOutput, log_ + ": the library's lines cannot be written; look for room on the disk");
    }
    if (isVerbose_) {
        system::writeToStandardOutput(std::string(line) + "\n");
    }
    handler_(line);
}

}  // namespace talvek::host
