#include "talvek/support/messages.h"

#include <cstdio>

namespace talvek::host {

namespace {

/// Where both streams go to one place, messages stand behind what was printed before them.
void printMessage(const char* prefix, const std::string& message) {
    std::fflush(stdout);
    std::fprintf(stderr, "%s%s\n", prefix, message.c_str());
}

}  // namespace

void printWarning(const std::string& message) {
    printMessage("talvek: warning: ", message);
}

void printWarnings(const std::vector<std::string>& messages) {
    for (const std::string& message : messages) {
        if (!message.empty()) {
            printWarning(message);
        }
    }
}

void printError(const std::string& message) {
    printMessage("talvek: ", message);
}

std::string countOf(std::uint64_t count, const std::string& thing) {
    const std::string things = thing == "vertex" ? "vertices" : thing + "s";
    return std::to_string(count) + " " + (count == 1 ? thing : things);
}

std::string briefNumber(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.4g", value);
    return text;
}

std::string byteCount(double bytes) {
    constexpr double kStep = 1000;
    const char* const units[] = {"bytes", "kB", "MB", "GB", "TB"};
    std::size_t unit = 0;
    while (bytes >= kStep && unit + 1 < std::size(units)) {
        bytes /= kStep;
        ++unit;
    }
    char text[48];
    std::snprintf(text, sizeof text, unit == 0 ? "%.0f %s" : "%.1f %s", bytes, units[unit]);
    return text;
}

}  // namespace talvek::host
