// How much memory this process has had at most.
#pragma once

#include <cstdint>
#include <fstream>
#include <string>

namespace talvek::test {

// Sanitizers keep freed blocks and a shadow of all memory.
#if defined(__linux__) && !defined(__SANITIZE_ADDRESS__)
inline constexpr bool kKnowsPeakMemory = true;
#else
inline constexpr bool kKnowsPeakMemory = false;
#endif

/// A figure of /proc/self/status, "VmHWM" or "VmRSS", in bytes.
inline std::int64_t memoryFigure(const std::string& name) {
    std::ifstream status("/proc/self/status");
    std::string word;
    std::int64_t kibibytes = 0;
    while (status >> word && word != name + ":") {
    }
    status >> kibibytes;
    return 1024 * kibibytes;
}

/// Watches from its making on by how much memory grows at most.
class PeakMemory {
  public:
    PeakMemory() {
        // Sets the largest size so far back to the present one.
        std::ofstream("/proc/self/clear_refs") << 5;
        before_ = memoryFigure("VmRSS");
    }
    std::int64_t growth() const { return memoryFigure("VmHWM") - before_; }

  private:
    std::int64_t before_ = 0;
};

}  // namespace talvek::test
