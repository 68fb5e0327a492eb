// A host that makes one run and says what it took: bench_host MESH MODE MODEL EPOCHS [frame]
// With "frame" the last frame is read back through the interface afterwards.
#include <cstdint>
#include <cstdlib>
#include <vector>

#include "measure.h"
#include "talvek.h"

namespace {

bool prepare(char** argv) {
    return talvekSetFileName(argv[1]) == TALVEK_OK && talvekSetTimeSpan(std::atoi(argv[4]), 365) == TALVEK_OK &&
           talvekSetMode(std::atoi(argv[2])) == TALVEK_OK && talvekSetModel(std::atoi(argv[3])) == TALVEK_OK &&
           talvekInit() == TALVEK_OK;
}

void readBack(std::uint32_t frame) {
    const auto count = static_cast<std::size_t>(talvekGetFrameNumTriangles(frame));
    std::vector<float> vertices(9 * count);
    std::vector<float> normals(9 * count);
    talvek::bench::measure("geometry", [&] {
        if (talvekGetFrameGeometry(frame, vertices.data(), normals.data()) != TALVEK_OK) {
            std::exit(1);
        }
    });
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 5) {
        std::fprintf(stderr, "usage: bench_host MESH MODE MODEL EPOCHS [frame]\n");
        return 2;
    }
    if (!prepare(argv)) {
        return 1;
    }
    talvek::bench::measure("run", [] {
        if (talvekStart() != TALVEK_OK) {
            std::exit(1);
        }
    });
    if (argc > 5) {
        readBack(static_cast<std::uint32_t>(std::atoi(argv[4])));
    }
    talvekFree();
    return 0;
}
