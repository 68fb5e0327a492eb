// How far a run has got, read from the library's lines, and a line about it on the terminal.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace talvek::host {

/// The number in a line that announces an epoch; nothing in any other line.
std::optional<std::int32_t> announcedEpoch(std::string_view line);

/// A terminal gets one line that changes; anything else a line every ten per cent, of runs that have as many epochs.
enum class ProgressKind : std::uint8_t { kNone, kTerminal, kLines };

class ProgressLine {
  public:
    ProgressLine(std::int32_t numEpochs, ProgressKind kind);
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;
    /// Clears the line.
    ~ProgressLine();

    /// An epoch has begun.
    void show(std::int32_t epoch);
    void clear();

  private:
    void printTenth(std::int32_t done);

    std::int32_t numEpochs_;
    ProgressKind kind_;
    std::int32_t tenths_ = 0;
    std::size_t width_ = 0;
    std::chrono::steady_clock::time_point begin_ = std::chrono::steady_clock::now();
};

/// The text of the progress line: `seconds` after the run's beginning, an epoch begins.
std::string progressText(std::int32_t epoch, std::int32_t numEpochs, double seconds);

}  // namespace talvek::host
