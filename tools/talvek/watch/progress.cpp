#include "talvek/watch/progress.h"

#include <charconv>
#include <cmath>
#include <cstdio>

#include "api/session/log_lines.h"

namespace talvek::host {

std::optional<std::int32_t> announcedEpoch(std::string_view line) {
    std::int32_t number = 0;
    if (!line.starts_with(kEpochLineStart) ||
        std::from_chars(line.data() + kEpochLineStart.size(), line.data() + line.size(), number).ec != std::errc()) {
        return std::nullopt;
    }
    return number;
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

std::string progressText(std::int32_t epoch, std::int32_t numEpochs, double seconds) {
    const std::int32_t done = epoch - 1;
    std::string text = "epoch " + std::to_string(epoch) + " of " + std::to_string(numEpochs) + ", " +
                       std::to_string(std::int64_t{100} * done / numEpochs) + " %";
    if (done > 0) {
        const double left = seconds / done * (numEpochs - done);
        text += ", " + clockTime(static_cast<std::uint64_t>(std::llround(left))) + " left";
    }
    return text;
}

ProgressLine::ProgressLine(std::int32_t numEpochs, bool isShown) : numEpochs_(numEpochs), isShown_(isShown) {}

ProgressLine::~ProgressLine() {
    clear();
}

void ProgressLine::show(std::int32_t epoch) {
    if (!isShown_) {
        return;
    }
    const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - begin_;
    const std::string text = progressText(epoch, numEpochs_, elapsed.count());
    const std::size_t leftover = width_ > text.size() ? width_ - text.size() : 0;
    std::fprintf(stderr, "\r%s%s", text.c_str(), std::string(leftover, ' ').c_str());
    std::fflush(stderr);
    width_ = text.size();
}

void ProgressLine::clear() {
    if (width_ > 0) {
        std::fprintf(stderr, "\r%s\r", std::string(width_, ' ').c_str());
        std::fflush(stderr);
        width_ = 0;
    }
}

}  // namespace talvek::host
