#include "base/pending_file.h"

#include "base/run_file_names.h"

namespace talvek {

namespace {

constexpr std::size_t kRandomLetters = 10;

/// With the separator at its end; empty for a name without one.
std::string folderOf(const std::string& path) {
#ifdef _WIN32
    const std::size_t folderEnd = path.find_last_of("/\\:");
#else
    const std::size_t folderEnd = path.rfind('/');
#endif
    return folderEnd == std::string::npos ? std::string() : path.substr(0, folderEnd + 1);
}

/// A name in the folder of `target`, short enough to fit wherever the target's own name fits.
std::string unfinishedName(const std::string& target) {
    constexpr std::string_view kLetters = "abcdefghijklmnopqrstuvwxyz0123456789";
    std::uint64_t number = system::randomNumber();
    std::string name = folderOf(target).append(kUnfinishedPrefix);
    for (std::size_t i = 0; i < kRandomLetters; ++i) {
        name += kLetters[number % kLetters.size()];
        number /= kLetters.size();
    }
    return name.append(kUnfinishedSuffix);
}

}  // namespace

PendingFile::PendingFile(const char* path, const std::optional<system::FileStamp>& replaced) : replaced_(replaced) {
    const system::FileKind kind = system::kindOf(path);
    if (kind == system::FileKind::kOther) {
        isDirect_ = true;
        path_ = path;
        file_ = system::File::openForWriting(path);
        return;
    }
    openBeside(path, kind);
}

void PendingFile::openBeside(const char* path, system::FileKind kind) {
    target_ = system::linkTarget(path);
    if (target_.empty()) {
        return;
    }
    if (kind == system::FileKind::kAbsent) {
        createUnfinished(system::NewFile::kUsual);
    } else if (system::isWritable(target_.c_str())) {
        createUnfinished(system::NewFile::kPrivate);
        const bool isOfTheSame = file_.isOpen() && file_.takeOver(target_.c_str());
        // Without its owner or its permissions, a new content is worth more than none, but not more than the old one.
        isFailed_ = replaced_.has_value() && !isOfTheSame;
    }
}

void PendingFile::createUnfinished(system::NewFile use) {
    // Names are random: only by a rare chance is one taken.
    constexpr int kMostAttempts = 100;
    for (int attempt = 0; attempt < kMostAttempts && !file_.isOpen(); ++attempt) {
        path_ = unfinishedName(target_);
        file_ = system::File::createInUse(path_.c_str(), use);
        if (!file_.isOpen() && system::kindOf(path_.c_str()) == system::FileKind::kAbsent) {
            return;
        }
    }
    use_ = file_.duplicate();
}

PendingFile::~PendingFile() {
    if (file_.isOpen()) {
        file_.close();
        if (!isDirect_) {
            system::removeFile(path_.c_str());
        }
    }
}

void PendingFile::write(const void* bytes, std::size_t size) {
    isFailed_ = isFailed_ || !file_.isOpen() || !file_.write(bytes, size);
}

bool PendingFile::mayReplace() const {
    return !replaced_ || system::stampOf(target_.c_str()) == replaced_;
}

bool PendingFile::finish(Durability durability) {
    if (!file_.isOpen()) {
        return false;
    }
    if (!isFailed_ && !isDirect_ && durability == Durability::kOnDisk) {
        isFailed_ = !file_.flushToDisk();
    }
    isFailed_ = !file_.close() || isFailed_;
    if (isDirect_) {
        return !isFailed_;
    }
    if (!isFailed_ && mayReplace() && system::replaceFile(path_.c_str(), target_.c_str())) {
        use_.close();
        return true;
    }
    system::removeFile(path_.c_str());
    use_.close();
    return false;
}

void removeAbandonedFilesBeside(const char* path) {
    std::string folder = folderOf(path);
    constexpr std::size_t kLength = kUnfinishedPrefix.size() + kRandomLetters + kUnfinishedSuffix.size();
    system::removeAbandonedFiles(folder, kUnfinishedPrefix, kUnfinishedSuffix, kLength);
}

}  // namespace talvek
