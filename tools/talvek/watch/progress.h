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

/// "0:42", "1:02:03"
std::string clockTime(std::uint64_t seconds);

class ProgressLine {
  public:
    ProgressLine(std::int32_t numEpochs, bool isShown);
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;
    /// Clears the line.
    ~ProgressLine();

    /// An epoch has begun.
    void show(std::int32_t epoch);
    void clear();

  private:
    std::int32_t numEpochs_;
    bool isShown_;
    std::size_t width_ = 0;
    std::chrono::steady_clock::time_point begin_ = std::chrono::steady_clock::now();
};

/// The text of the progress line: `seconds` after the run's beginning, an epoch begins.
std::string progressText(std::int32_t epoch, std::int32_t numEpochs, double seconds);

}  // namespace talvek::host
