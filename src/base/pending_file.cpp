#include "base/pending_file.h"

#include "base/run_file_names.h"

namespace talvek {

namespace {

/// A name in the folder of `target`, short enough to fit wherever the target's own name fits.
std::string temporaryName(const std::string& target, int attempt) {
#ifdef _WIN32
    const std::size_t folderEnd = target.find_last_of("/\\:");
#else
    const std::size_t folderEnd = target.rfind('/');
#endif
    const std::string folder = folderEnd == std::string::npos ? std::string() : target.substr(0, folderEnd + 1);
    return folder + std::string(kUnfinishedPrefix) + std::to_string(system::processId()) + "-" +
           std::to_string(attempt) + std::string(kUnfinishedSuffix);
}

}  // namespace

PendingFile::PendingFile(const char* path) {
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
    if (kind == system::FileKind::kRegular && !system::isWritable(target_.c_str())) {
        return;
    }
    // A name can be taken by another file that is being written, or by what an earlier process of the same number left
    // behind.
    constexpr int kMostAttempts = 1000;
    for (int attempt = 0; attempt < kMostAttempts && !file_.isOpen(); ++attempt) {
        path_ = temporaryName(target_, attempt);
        file_ = system::File::createNew(path_.c_str());
        if (!file_.isOpen() && system::kindOf(path_.c_str()) == system::FileKind::kAbsent) {
            return;
        }
    }
    if (file_.isOpen() && kind == system::FileKind::kRegular) {
        system::copyPermissions(target_.c_str(), path_.c_str());
    }
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
    if (!isFailed_ && system::replaceFile(path_.c_str(), target_.c_str())) {
        return true;
    }
    system::removeFile(path_.c_str());
    return false;
}

}  // namespace talvek
