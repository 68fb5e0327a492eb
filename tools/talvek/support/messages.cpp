#include "talvek/support/messages.h"

#include <cstdio>

#include "talvek.h"

namespace talvek::host {

namespace {

std::vector<std::string> warnings;
bool isSilent = false;

/// Where both streams go to one place, messages stand behind what was printed before them.
void printMessage(const char* prefix, const std::string& message) {
    std::fflush(stdout);
    std::fprintf(stderr, "%s%s\n", prefix, message.c_str());
}

}  // namespace

std::string programVersion() {
    return "talvek " + std::to_string(TALVEK_VERSION_MAJOR) + "." + std::to_string(TALVEK_VERSION_MINOR) + "." +
           std::to_string(TALVEK_VERSION_PATCH);
}

void printWarning(const std::string& message) {
    printMessage("talvek: warning: ", message);
    warnings.push_back(message);
}

const std::vector<std::string>& printedWarnings() {
    return warnings;
}

void say(const std::string& line) {
    if (!isSilent) {
        std::printf("%s\n", line.c_str());
    }
}

void keepSilent() {
    isSilent = true;
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

std::string clockTime(std::uint64_t seconds) {
    const auto hours = static_cast<unsigned>(seconds / 3600);
    const auto minutes = static_cast<unsigned>(seconds / 60 % 60);
    const auto rest = static_cast<unsigned>(seconds % 60);
    char text[48];
    if (hours > 0) {
        std::snprintf(text, sizeof text, "%u:%02u:%02u", hours, minutes, rest);
    } else {
        std::snprintf(text, sizeof text, "%u:%02u", minutes, rest);
    }
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
