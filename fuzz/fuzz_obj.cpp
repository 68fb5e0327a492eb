// Fuzzes the reading of OBJ text.
#include "use_mesh.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    talvek::fuzz::loadAndUse("input.obj", data, size);
    return 0;
}
