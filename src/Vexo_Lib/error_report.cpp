#include "Vexo_Lib/error_report.h"

#include "base/system.h"

namespace talvek {

namespace {

std::string linePrefix(const SourceSite& site) {
    return ErrorTimeStamp() + " " + SourceBaseName(site.file) + ":" + std::to_string(site.line) + " >> ";
}

}  // namespace

std::string ErrorTimeStamp() {
    return "(" + system::timeOfDay() + ")";
}

std::string SourceBaseName(const char* path) {
    if (path == nullptr) {
        return {};
    }
    const std::string_view whole = path;
    const std::size_t separator = whole.find_last_of("/\\");
    return std::string(separator == std::string_view::npos ? whole : whole.substr(separator + 1));
}

std::string CurrentDirectory() {
    return system::currentDirectory();
}

std::string errorReport(const SourceSite& site, std::string_view message, std::string_view path) {
    const std::string prefix = linePrefix(site);
    return prefix + "ERROR INFORMATION BELOW\n" + prefix + "Current dir: " + CurrentDirectory() + "\n" + prefix +
           std::string(message).append(path).append("\n");
}

void reportError(const SourceSite& site, std::string_view message, std::string_view path) {
    system::writeToStandardError(errorReport(site, message, path));
}

void reportLine(const SourceSite& site, std::string_view text) {
    system::writeToStandardError(linePrefix(site).append(text).append("\n"));
}

}  // namespace talvek
