// The report that a mesh file reader writes to standard error when it fails.
#pragma once

#include <string>
#include <string_view>

namespace talvek {

/// Where in the sources a report is made.
struct SourceSite {
    const char* file;
    int line;
};

#define TALVEK_HERE        \
    ::talvek::SourceSite { \
        __FILE__, __LINE__ \
    }

/// Writes three lines: an announcement, the working directory, and `message` directly followed by `path`.
void reportError(const SourceSite& site, std::string_view message, std::string_view path);

/// The text that reportError writes.
std::string errorReport(const SourceSite& site, std::string_view message, std::string_view path);

/// Writes one line that begins as the lines of an error report do: time, source and line number.
void reportLine(const SourceSite& site, std::string_view text);

/// The local time of day in parentheses, "(HH:MM:SS)".
std::string ErrorTimeStamp();

/// What follows the last '/' or '\' of a path; the whole path where there is none; empty for null.
std::string SourceBaseName(const char* path);

/// The working directory; empty when it cannot be told.
std::string CurrentDirectory();

}  // namespace talvek
