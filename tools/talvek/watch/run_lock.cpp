#include "talvek/watch/run_lock.h"

#include <string>

#include "base/run_file_names.h"
#include "talvek/support/exit_status.h"
#include "talvek/support/paths.h"
#include "talvek/support/whole_file.h"

namespace talvek::host {

namespace {

std::string lockName(const RunFiles& files) {
    const std::string name = nameOf(pathOf(files.mesh).filename());
    return nameOf(files.folder / pathOf(std::string(kUnfinishedPrefix).append(baseName(name)).append(kLockSuffix)));
}

/// " (process 123)"; empty where the file does not say.
std::string holderOf(const std::string& name) {
    try {
        constexpr std::size_t kLongestNumber = 20;
        const std::string text = readBeginning(name, kLongestNumber, kExitRefused);
        const std::string number = text.substr(0, text.find('\n'));
        return number.empty() ? "" : " (process " + number + ")";
    } catch (const Failure&) {
        return "";
    }
}

}  // namespace

RunLock::RunLock(const RunFiles& files) {
    const std::string name = lockName(files);
    file_ = system::File::openLocked(name.c_str());
    if (file_.isOpen()) {
        scratch_.emplace(name);
        const std::string number = std::to_string(system::processId()) + "\n";
        // Without it the other run is told all the same, but not which it is.
        static_cast<void>(file_.write(number.data(), number.size()));
    } else if (system::kindOf(name.c_str()) == system::FileKind::kRegular) {
        throw Failure(kExitRefused, files.mesh + ": another run is writing to the same names" + holderOf(name) +
                                        "; wait for its end, or give this one a folder of its own with --out");
    }
}

}  // namespace talvek::host
