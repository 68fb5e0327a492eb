// Fuzzes the reading of BIN meshes.
#include "use_mesh.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    talvek::fuzz::loadAndUse("input.bin", data, size);
    return 0;
}
