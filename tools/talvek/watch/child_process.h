// A program that runs as a child of this one: its output, its end, and its end by the user's wish.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace talvek::host {

/// How a child ended.
struct ChildEnd {
    /// False when it was ended from outside or crashed; `code` is then the signal or the system's exception code.
    bool isRegular = false;
    std::uint32_t code = 0;

    /// "ended by signal 9 (Killed)" or the like.
    std::string describe() const;
};

/// Where a child's standard error goes: to this program's own, or the same way as the child's standard output.
enum class ChildErrors : bool { kShared, kWithOutput };

class ChildProcess {
  public:
    /// Starts `command`, the program's path first, its standard output connected to this object. Throws
    /// std::runtime_error when that fails.
    explicit ChildProcess(const std::vector<std::string>& command, ChildErrors errors = ChildErrors::kShared);
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;
    /// Ends the child if it still runs.
    ~ChildProcess();

    /// Waits for output and reads up to `size` bytes of it; 0 when the child has closed its output.
    std::size_t readOutput(char* to, std::size_t size);

    /// Waits until the child has ended; called again, returns the same end at once.
    ChildEnd wait();

    /// Ends the child at once, without a chance to tidy up.
    void kill();

    std::uint64_t id() const { return id_; }

  private:
    friend class CancelGuard;
    void closeOutput();

    std::uint64_t id_ = 0;
    /// A descriptor, or a HANDLE.
    std::intptr_t output_ = -1;
    /// Under Windows the HANDLE of the process, and of the job that ends it with this program.
    [[maybe_unused]] std::intptr_t process_ = -1;
    [[maybe_unused]] std::intptr_t job_ = -1;
    bool hasEnded_ = false;
    ChildEnd end_;
};

/// As long as a guard exists, Ctrl-C, a request to terminate and the end of the terminal end `child`, and this program
/// goes on and tidies up. A signal that this program was told to ignore when it was started ends neither. There is at
/// most one guard at a time, and it is destroyed before its ChildProcess is.
class CancelGuard {
  public:
    explicit CancelGuard(ChildProcess& child);
    CancelGuard(const CancelGuard&) = delete;
    CancelGuard& operator=(const CancelGuard&) = delete;
    ~CancelGuard();

    bool isCancelled() const;
};

/// A file that goes with this object, and also when Ctrl-C or the like ends the program before. There are at most
/// kMostScratchFiles at a time.
class ScratchFile {
  public:
    static constexpr int kMostScratchFiles = 4;

    explicit ScratchFile(std::string name);
    ScratchFile(const ScratchFile&) = delete;
    ScratchFile& operator=(const ScratchFile&) = delete;
    ~ScratchFile();

    const std::string& name() const { return name_; }

  private:
    std::string name_;
    int slot_ = -1;
};

/// For a child: after this call it does not outlive the program that started it, however that one ends.
void endWithParent();

/// The path of the running program.
std::string programPath();

/// Whether standard error is a terminal.
bool hasTerminal();

/// After this call a write beyond the limit for the size of a file fails, as on a full disk; before, it ends the
/// program.
void reportFileSizeLimitAsError();

}  // namespace talvek::host
