#include "talvek/formats/gzip_stream.h"

#include <zlib.h>

#include <algorithm>
#include <array>
#include <utility>

#include "talvek/support/exit_status.h"
#include "talvek/support/messages.h"

namespace talvek::host {

namespace {

/// Meshes shrink to a third or a tenth. Zeros shrink to a thousandth, and are no mesh.
constexpr std::uint64_t kLargestExpansion = 100;
constexpr std::uint64_t kFreeExpansion = 1 << 20;

}  // namespace

struct GzipStream::State {
    z_stream zlib{};
    std::array<unsigned char, 65536> input{};
    /// Behind the end of a member, where another one may begin.
    bool isBetweenMembers = false;
};

GzipStream::GzipStream(InputFile& file, std::string path)
    : file_(file), path_(std::move(path)), state_(std::make_unique<State>()) {
    limit_ =
        kLargestExpansion * static_cast<std::uint64_t>(std::max<std::int64_t>(file.remaining(), 0)) + kFreeExpansion;
    constexpr int kGzipOnly = 16 + MAX_WBITS;
    if (inflateInit2(&state_->zlib, kGzipOnly) != Z_OK) {
        throw std::bad_alloc();
    }
}

GzipStream::~GzipStream() {
    inflateEnd(&state_->zlib);
}

void GzipStream::feed() {
    state_->zlib.next_in = state_->input.data();
    state_->zlib.avail_in = static_cast<uInt>(file_.read(state_->input.data(), state_->input.size()));
    if (state_->zlib.avail_in == 0) {
        if (!state_->isBetweenMembers) {
            throw Failure(kExitMesh, path_ + ": the compressed file ends too early; fetch it again");
        }
        atEnd_ = true;
    }
}

std::size_t GzipStream::read(void* to, std::size_t size) {
    z_stream& zlib = state_->zlib;
    std::size_t got = 0;
    while (got < size && !atEnd_) {
        if (zlib.avail_in == 0) {
            feed();
            continue;
        }
        if (std::exchange(state_->isBetweenMembers, false)) {
            inflateReset(&zlib);
        }
        const auto wanted = static_cast<uInt>(std::min<std::size_t>(size - got, 1 << 30));
        zlib.next_out = static_cast<Bytef*>(to) + got;
        zlib.avail_out = wanted;
        const int result = inflate(&zlib, Z_NO_FLUSH);
        if (result == Z_MEM_ERROR) {
            throw std::bad_alloc();
        }
        if (result != Z_OK && result != Z_STREAM_END && result != Z_BUF_ERROR) {
            throw Failure(kExitMesh, path_ + ": the compressed file is damaged; fetch it again");
        }
        state_->isBetweenMembers = result == Z_STREAM_END;
        got += wanted - zlib.avail_out;
        if (produced_ + got > limit_) {
            throw Failure(kExitMesh, path_ + ": the file expands to more than " +
                                         byteCount(static_cast<double>(limit_)) +
                                         ", which no mesh of its size does; uncompress it yourself if it is sound");
        }
    }
    produced_ += got;
    return got;
}

}  // namespace talvek::host
