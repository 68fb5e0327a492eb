#include "talvek/support/whole_file.h"

#include <algorithm>

#include "base/input_file.h"

namespace talvek::host {

std::string readBeginning(const std::string& path, std::size_t size, ExitStatus otherwise) {
    InputFile file(path.c_str());
    if (!file.isOpen() || file.remaining() < 0) {
        throw Failure(otherwise, path + ": the file cannot be opened; look for its permissions");
    }
    std::string bytes(std::min(size, static_cast<std::size_t>(file.remaining())), '\0');
    bytes.resize(file.read(bytes.data(), bytes.size()));
    return bytes;
}

std::string readWholeFile(const std::string& path, ExitStatus otherwise) {
    return readBeginning(path, std::string::npos, otherwise);
}

}  // namespace talvek::host
