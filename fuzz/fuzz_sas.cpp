// Fuzzes the reading of SAS meshes of all versions; the oldest is replaced on disk.
#include "use_mesh.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    talvek::fuzz::loadAndUse("input.sas", data, size);
    return 0;
}
