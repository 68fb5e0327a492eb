// The least that any program has to do: the same bytes, in and out, with nothing computed.
// bench_raw MESH FILE ...   reads the mesh and writes a copy of each file, whose bytes are fetched beforehand
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "measure.h"

namespace {

constexpr std::size_t kPiece = 262144;

std::vector<char> contentOf(const char* path) {
    const int file = open(path, O_RDONLY);
    struct stat status {};
    if (file < 0 || fstat(file, &status) != 0) {
        std::perror(path);
        std::exit(1);
    }
    std::vector<char> bytes(static_cast<std::size_t>(status.st_size));
    std::size_t got = 0;
    while (got < bytes.size()) {
        const ssize_t piece = read(file, bytes.data() + got, bytes.size() - got);
        if (piece <= 0) {
            std::exit(1);
        }
        got += static_cast<std::size_t>(piece);
    }
    close(file);
    return bytes;
}

void readThrough(const char* path) {
    std::vector<char> piece(kPiece);
    const int file = open(path, O_RDONLY);
    while (read(file, piece.data(), piece.size()) > 0) {
    }
    close(file);
}

void writeAll(const std::vector<char>& bytes, const char* path) {
    const int file = open(path, O_WRONLY | O_CREAT | O_TRUNC, 0666);
    for (std::size_t at = 0; at < bytes.size(); at += kPiece) {
        const std::size_t size = bytes.size() - at < kPiece ? bytes.size() - at : kPiece;
        if (write(file, bytes.data() + at, size) != static_cast<ssize_t>(size)) {
            std::perror(path);
            std::exit(1);
        }
    }
    close(file);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 3) {
        std::fprintf(stderr, "usage: bench_raw MESH FILE ...\n");
        return 2;
    }
    double seconds = 0;
    const double start = talvek::bench::processorSeconds();
    readThrough(argv[1]);
    seconds += talvek::bench::processorSeconds() - start;
    std::vector<std::string> copies;
    for (int i = 2; i < argc; ++i) {
        const std::vector<char> bytes = contentOf(argv[i]);
        copies.push_back(std::string(argv[i]) + ".copy");
        const double before = talvek::bench::processorSeconds();
        writeAll(bytes, copies.back().c_str());
        seconds += talvek::bench::processorSeconds() - before;
    }
    for (const std::string& copy : copies) {
        unlink(copy.c_str());
    }
    std::printf("run %.6f 0\n", seconds);
    return 0;
}
