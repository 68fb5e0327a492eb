#include "base/output_file.h"

#include <algorithm>
#include <cstring>

namespace talvek {

OutputFile::OutputFile(const char* path, Durability durability, const std::optional<system::FileStamp>& replaced)
    : durability_(durability) {
    files_.emplace_back(path, replaced);
}

OutputFile::OutputFile(std::span<const std::string> paths) {
    for (const std::string& path : paths) {
        files_.emplace_back(path.c_str());
    }
}

bool OutputFile::isOpen() const {
    return std::ranges::any_of(files_, [](const PendingFile& file) { return file.isOpen(); });
}

void OutputFile::writeToAll(const void* bytes, std::size_t size) {
    for (PendingFile& file : files_) {
        file.write(bytes, size);
    }
}

void OutputFile::flush() {
    writeToAll(buffer_.get(), used_);
    used_ = 0;
}

void OutputFile::writeBytes(const void* bytes, std::size_t size) {
    if (size >= kBufferSize) {
        flush();
        writeToAll(bytes, size);
        return;
    }
    std::memcpy(reserve(size), bytes, size);
    used_ += size;
}

bool OutputFile::finish() {
    flush();
    bool isComplete = true;
    for (PendingFile& file : files_) {
        isComplete = file.finish(durability_) && isComplete;
    }
    return isComplete;
}

}  // namespace talvek
