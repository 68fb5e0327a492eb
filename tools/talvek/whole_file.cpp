#include "talvek/whole_file.h"

#include "base/input_file.h"

namespace talvek::host {

std::string readWholeFile(const std::string& path, ExitStatus otherwise) {
    InputFile file(path.c_str());
    std::string bytes;
    if (!file.isOpen() || file.remaining() < 0) {
        throw Failure(otherwise, path + ": the file cannot be opened");
    }
    bytes.resize(static_cast<std::size_t>(file.remaining()));
    bytes.resize(file.read(bytes.data(), bytes.size()));
    return bytes;
}

}  // namespace talvek::host
