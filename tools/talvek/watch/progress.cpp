#include "talvek/watch/progress.h"

#include <charconv>
#include <cmath>
#include <cstdio>

#include "api/session/log_lines.h"
#include "talvek/support/messages.h"

namespace talvek::host {

std::optional<std::int32_t> announcedEpoch(std::string_view line) {
    std::int32_t number = 0;
    if (!line.starts_with(kEpochLineStart) ||
        std::from_chars(line.data() + kEpochLineStart.size(), line.data() + line.size(), number).ec != std::errc()) {
        return std::nullopt;
    }
    return number;
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

ProgressLine::ProgressLine(std::int32_t numEpochs, ProgressKind kind) : numEpochs_(numEpochs), kind_(kind) {}

ProgressLine::~ProgressLine() {
    clear();
}

void ProgressLine::printTenth(std::int32_t done) {
    constexpr std::int32_t kTenths = 10;
    const std::int32_t tenths = kTenths * done / numEpochs_;
    if (numEpochs_ >= kTenths && tenths > tenths_) {
        tenths_ = tenths;
        std::fprintf(stderr, "%d %% done, %d of %d epochs\n", static_cast<int>(tenths * kTenths),
                     static_cast<int>(done), static_cast<int>(numEpochs_));
    }
}

void ProgressLine::show(std::int32_t epoch) {
    if (kind_ == ProgressKind::kLines) {
        printTenth(epoch - 1);
    }
    if (kind_ != ProgressKind::kTerminal) {
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
