#include "use_mesh.h"

#include <new>

#include "Vexo_Lib/load3d.h"
#include "input_on_disk.h"
#include "support/use_mesh.h"

namespace talvek::fuzz {

void loadAndUse(const char* name, const std::uint8_t* data, std::size_t size) try {
    const std::unique_ptr<Object3D> mesh = LoadMeshFile(writeInput(name, data, size));
    if (mesh == nullptr) {
        return;
    }
    if (!test::hasSoundIndices(*mesh)) {
        __builtin_trap();
    }
    test::weatherOnce(*mesh);
    countUse();
} catch (const std::bad_alloc&) {
    return;
}

}  // namespace talvek::fuzz
