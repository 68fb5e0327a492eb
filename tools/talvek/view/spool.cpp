#include "talvek/view/spool.h"

#include <atomic>
#include <string>

#include "base/run_file_names.h"
#include "base/system.h"
#include "talvek/support/exit_status.h"
#include "talvek/support/paths.h"

namespace talvek::host {

namespace {

std::filesystem::path newName(const std::filesystem::path& folder) {
    static std::atomic<unsigned> number = 0;
    return folder / pathOf(std::string(kUnfinishedPrefix) + std::to_string(system::processId()) + "-spool" +
                           std::to_string(++number) + std::string(kUnfinishedSuffix));
}

}  // namespace

Spool::Spool(const std::filesystem::path& folder) : path_(newName(folder)) {
    file_.open(path_, std::ios::binary | std::ios::in | std::ios::out | std::ios::trunc);
    if (!file_.is_open()) {
        throw Failure(kExitOutput,
                      nameOf(folder) + ": no temporary file can be created here; look for the folder's permissions");
    }
#ifndef _WIN32
    // The file lives on without a name until it is closed, however the program ends.
    std::error_code ignored;
    std::filesystem::remove(path_, ignored);
#endif
}

Spool::~Spool() {
    file_.close();
    std::error_code ignored;
    std::filesystem::remove(path_, ignored);
}

Spool::Piece Spool::append(std::span<const std::uint8_t> bytes) {
    file_.seekp(static_cast<std::streamoff>(end_));
    file_.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    file_.flush();
    if (!file_) {
        throw Failure(kExitOutput, "there is no room for a temporary file beside the page");
    }
    const Piece piece{end_, bytes.size()};
    end_ += bytes.size();
    return piece;
}

void Spool::read(const Piece& piece, std::span<std::uint8_t> into) {
    file_.seekg(static_cast<std::streamoff>(piece.offset));
    file_.read(reinterpret_cast<char*>(into.data()), static_cast<std::streamsize>(piece.size));
    if (!file_) {
        throw Failure(kExitOutput, "a temporary file beside the page cannot be read again");
    }
}

std::vector<std::uint8_t> Spool::read(const Piece& piece) {
    std::vector<std::uint8_t> bytes(piece.size);
    read(piece, bytes);
    return bytes;
}

}  // namespace talvek::host
