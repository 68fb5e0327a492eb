// Fuzzes the reading of geometry images.
#include "use_mesh.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    talvek::fuzz::loadAndUse("input.fim", data, size);
    return 0;
}
