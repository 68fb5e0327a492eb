// Fuzzes the reading of parameter files; what was read is written and read again.
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>

#include "input_on_disk.h"
#include "talvek.h"

namespace {

std::string savedText() {
    std::ifstream file(talvek::fuzz::folder() + "/input.cfg", std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    talvek::fuzz::writeInput("input.cfg", data, size);
    talvekSetFileName((talvek::fuzz::folder() + "/input.obj").c_str());
    talvekFree();
    talvekSetMode(TALVEK_MODE_MESH_DATA);
    talvekSetModel(TALVEK_MODEL_ACID_RAIN);
    talvekSetTimeSpan(2, 365);
    if (talvekReadParams() != TALVEK_OK) {
        std::abort();
    }
    std::uint32_t days = 0;
    talvekGetFrameTime(static_cast<std::uint32_t>(talvekGetNumEpochs()), &days);
    talvek::fuzz::countUse();
    // Saving takes five times as long as reading, and many epochs are slow rather than interesting.
    constexpr std::int32_t kMostEpochs = 64;
    if (size % 8 != 0 || talvekGetNumEpochs() > kMostEpochs) {
        return 0;
    }
    if (talvekSaveParams() != TALVEK_OK) {
        std::abort();
    }
    const std::string saved = savedText();
    // Six digits are kept of a number: from the second time on nothing changes any more.
    if (talvekReadParams() != TALVEK_OK || talvekSaveParams() != TALVEK_OK || savedText() != saved) {
        std::abort();
    }
    return 0;
}
