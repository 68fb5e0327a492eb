#include "talvek/formats/mesh_input.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "talvek/support/exit_status.h"
#include "talvek/support/whole_file.h"

namespace talvek::host {

namespace {

constexpr std::size_t kFirstBuffer = 65536;

bool beginsAsGzip(const std::string& path) {
    return readBeginning(path, 2, kExitMesh) == "\x1F\x8B";
}

}  // namespace

MeshInput::MeshInput(std::string path) : path_(std::move(path)), file_(path_.c_str()), buffer_(kFirstBuffer) {
    if (beginsAsGzip(path_)) {
        gzip_ = std::make_unique<GzipStream>(file_, path_);
    }
}

std::size_t MeshInput::read(char* to, std::size_t size) {
    const std::size_t got = gzip_ != nullptr ? gzip_->read(to, size) : file_.read(to, size);
    if (file_.hasFailed()) {
        throw Failure(kExitMesh, path_ + ": the file cannot be read to its end; look for the disk or the network");
    }
    return got;
}

void MeshInput::fill(std::size_t size) {
    std::memmove(buffer_.data(), buffer_.data() + begin_, end_ - begin_);
    passed_ += begin_;
    end_ -= begin_;
    begin_ = 0;
    while (end_ < size && !atEnd_) {
        if (end_ == buffer_.size()) {
            // Only as much more as has turned out to be there: a promise alone takes no memory.
            buffer_.resize(2 * buffer_.size());
        }
        const std::size_t wanted = buffer_.size() - end_;
        const std::size_t got = read(buffer_.data() + end_, wanted);
        atEnd_ = got < wanted;
        end_ += got;
    }
}

std::string_view MeshInput::ahead(std::size_t size) {
    if (end_ - begin_ < size && !atEnd_) {
        fill(size);
    }
    return {buffer_.data() + begin_, end_ - begin_};
}

void MeshInput::beginText() {
    constexpr std::string_view kMarkOfUtf8 = "\xEF\xBB\xBF";
    const std::string_view start = ahead(kMarkOfUtf8.size());
    if (start.starts_with("\xFE\xFF") || start.starts_with("\xFF\xFE")) {
        throw Failure(kExitMesh, path_ + ": the text is coded as UTF-16; save it as plain text or UTF-8");
    }
    if (start.starts_with(kMarkOfUtf8)) {
        pass(kMarkOfUtf8.size());
    }
}

bool MeshInput::nextLine(std::string_view& line) {
    if (lineNumber_ == 0) {
        beginText();
    }
    std::string_view rest = ahead(1);
    std::size_t end = rest.find('\n');
    while (end == std::string_view::npos && !atEnd_) {
        const std::size_t searched = rest.size();
        rest = ahead(searched + 1);
        end = rest.find('\n', searched);
    }
    if (rest.empty()) {
        return false;
    }
    line = rest.substr(0, end);
    pass(std::min(line.size() + 1, rest.size()));
    if (line.ends_with('\r')) {
        line.remove_suffix(1);
    }
    ++lineNumber_;
    return true;
}

std::uint64_t MeshInput::mostLeft() const {
    const std::uint64_t unread =
        gzip_ != nullptr ? gzip_->mostLeft() : static_cast<std::uint64_t>(std::max<std::int64_t>(file_.remaining(), 0));
    return unread + (end_ - begin_);
}

void MeshInput::failAtLine(const std::string& reason) const {
    throw Failure(kExitMesh, path_ + ": line " + std::to_string(lineNumber_) + ": " + reason);
}

void MeshInput::failAtByte(const std::string& reason) const {
    throw Failure(kExitMesh, path_ + ": byte " + std::to_string(passed_ + begin_) + ": " + reason);
}

}  // namespace talvek::host
