// Error reports without what differs from run to run.
#pragma once

#include <cctype>
#include <string>

#include "support/test_files.h"

namespace talvek::test {

/// Whether the text is the time of a day, "HH:MM:SS".
inline bool isTimeOfDay(std::string_view text) {
    const auto number = [text](std::size_t at) { return (text[at] - '0') * 10 + (text[at + 1] - '0'); };
    if (text.size() != 8 || text[2] != ':' || text[5] != ':') {
        return false;
    }
    for (const std::size_t at : {0, 1, 3, 4, 6, 7}) {
        if (std::isdigit(static_cast<unsigned char>(text[at])) == 0) {
            return false;
        }
    }
    return number(0) < 24 && number(3) < 60 && number(6) < 61;
}

/// A report with "(TIME)" for the time of each line and "LINE" for the number of the source line.
inline std::string comparableReport(const std::string& report) {
    std::string text = withoutCarriageReturns(report);
    for (std::size_t begin = 0; begin < text.size(); begin = text.find('\n', begin) + 1) {
        if (text[begin] == '(' && isTimeOfDay(std::string_view(text).substr(begin + 1, 8))) {
            text.replace(begin + 1, 8, "TIME");
        }
        const std::size_t mark = text.find(" >> ", begin);
        const std::size_t colon = text.rfind(':', mark);
        if (mark != std::string::npos && colon != std::string::npos && colon > begin &&
            text.find_first_not_of("0123456789", colon + 1) == mark) {
            text.replace(colon + 1, mark - colon - 1, "LINE");
        }
        if (text.find('\n', begin) == std::string::npos) {
            break;
        }
    }
    return text;
}

}  // namespace talvek::test
