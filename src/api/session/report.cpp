#include "api/session/report.h"

#include <algorithm>

#include "api/session/session.h"

namespace talvek {

bool writeText(system::File& file, std::string_view text, std::string_view lineEnd) {
    if (lineEnd == "\n") {
        return file.write(text.data(), text.size());
    }
    while (!text.empty()) {
        const std::size_t line = std::min(text.find('\n'), text.size());
        if (!file.write(text.data(), line)) {
            return false;
        }
        text.remove_prefix(line);
        if (!text.empty()) {
            if (!file.write(lineEnd.data(), lineEnd.size())) {
                return false;
            }
            text.remove_prefix(1);
        }
    }
    return true;
}

void report(std::string_view format, std::initializer_list<MessageArgument> arguments) {
    TalvekSession& current = session();
    formatMessage(current.messageBuffer, format, arguments);
    char expanded[TalvekSession::kTextSize];
    const std::string_view text(expanded, expandWithoutArguments(current.messageBuffer, expanded));
    system::writeToStandardOutput(text);
    if (current.logFile.isOpen()) {
        writeText(current.logFile, text);
    }
}

}  // namespace talvek
