#include "input_on_disk.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>

namespace talvek::fuzz {

namespace {

class Folder {
  public:
    Folder() {
        const char* memory = "/dev/shm";
        const std::filesystem::path parent =
            ::access(memory, W_OK) == 0 ? memory : std::filesystem::temp_directory_path();
        path_ = (parent / ("talvek-fuzz-" + std::to_string(::getpid()))).string();
        std::filesystem::create_directories(path_);
    }
    ~Folder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    const std::string& path() const { return path_; }

  private:
    std::string path_;
};

/// The inputs so far, and how many of them were of use.
class Tally {
  public:
    ~Tally() {
        constexpr int kEnoughToJudge = 1000;
        if (inputs >= kEnoughToJudge && uses == 0) {
            std::abort();
        }
    }
    std::int64_t inputs = 0;
    std::int64_t uses = 0;
};
Tally tally;

}  // namespace

const std::string& folder() {
    static const Folder folder;
    return folder.path();
}

const char* writeInput(const char* name, const std::uint8_t* data, std::size_t size) {
    ++tally.inputs;
    static std::string path;
    path = folder() + "/" + name;
    const int file = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    if (file < 0 || ::write(file, data, size) != static_cast<ssize_t>(size) || ::close(file) != 0) {
        std::abort();
    }
    return path.c_str();
}

void countUse() {
    ++tally.uses;
}

}  // namespace talvek::fuzz
