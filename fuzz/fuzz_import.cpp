// Fuzzes the import of one format, whose files end in TALVEK_FUZZ_EXTENSION.
#include <algorithm>
#include <cstdlib>
#include <new>

#include "input_on_disk.h"
#include "talvek/formats/import_mesh.h"
#include "talvek/support/exit_status.h"

namespace {

void require(bool isTrue) {
    if (!isTrue) {
        std::abort();
    }
}

void use(talvek::host::ImportedMesh&& mesh) {
    const std::int64_t numTexels = static_cast<std::int64_t>(mesh.texels.size() / 2);
    require(std::ranges::all_of(mesh.corners, [&](std::int32_t v) { return v >= 0 && v < mesh.numVertices(); }));
    require(std::ranges::all_of(mesh.cornerTexels, [&](std::int32_t t) { return t >= -1 && t < numTexels; }));
    require(mesh.cornerTexels.empty() || mesh.cornerTexels.size() == mesh.corners.size());
    require(mesh.colours.empty() || mesh.colours.size() / 4 == mesh.positions.size() / 3);
    require(mesh.triangleMaterials.empty() || mesh.triangleMaterials.size() == mesh.corners.size() / 3);
    talvek::host::narrowMesh(std::move(mesh))->updateNormals(true);
    talvek::fuzz::countUse();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const char* path = talvek::fuzz::writeInput("input" TALVEK_FUZZ_EXTENSION, data, size);
    talvek::host::ImportOptions options;
    options.weld = size % 3 == 0 ? 0.5 : 0;
    try {
        use(talvek::host::importMesh(path, options));
    } catch (const talvek::host::Failure&) {
        return 0;
    } catch (const std::bad_alloc&) {
        return 0;
    }
    return 0;
}
