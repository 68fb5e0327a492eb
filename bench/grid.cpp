// The operating mode that weathers a grid, without its files: as the library does it, or in the plain form that it is
// tested against.
//   bench_grid draw library|plain MESH                 the mesh's positions drawn into the grid
//   bench_grid epochs library|plain MESH MAP EPOCHS    epochs on the grid
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>

#include "Vexo_Lib/load3d.h"
#include "measure.h"
#include "support/plain_delta_grid.h"
#include "support/plain_rasteriser.h"
#include "weathering/delta_grid.h"
#include "weathering/grid_mesh.h"
#include "weathering/grid_surface.h"
#include "weathering/mineral_map.h"
#include "weathering/rasterise.h"

namespace {

using talvek::Grid;
using talvek::kGridSize;
using talvek::MineralMap;
using talvek::Object3D;

constexpr double kDelta = -0.017;

template <typename T>
std::unique_ptr<T> present(std::unique_ptr<T> value, const char* path) {
    if (value == nullptr) {
        std::fprintf(stderr, "%s: not read\n", path);
        std::exit(1);
    }
    return value;
}

Grid makeGrid(const std::vector<float>& values, std::int32_t channels) {
    return {kGridSize, kGridSize, channels, talvek::copyArray(values.data(), static_cast<std::int64_t>(values.size()))};
}

Grid drawPlainly(const Object3D& mesh, const talvek::HeapArray<float>& attribute) {
    return makeGrid(talvek::test::plainRaster(mesh, attribute.get()), 3);
}

Grid drawFirst(const Object3D& mesh) {
    return std::move(*talvek::rasteriseToGrid(mesh, mesh.vertices.get()));
}

/// Makes the epochs; returns the last positions.
Grid runPlainly(const Object3D& mesh, const MineralMap& map, int epochs) {
    const Grid first = drawFirst(mesh);
    std::unique_ptr<Object3D> frame = talvek::gridToMesh(&first, true);
    Grid positions = drawPlainly(*frame, frame->vertices);
    Grid normals = drawPlainly(*frame, frame->vertexNormals);
    talvek::bench::measure("epochs", [&] {
        for (int epoch = 0; epoch < epochs; ++epoch) {
            const Grid deltas = makeGrid(talvek::test::plainDeltas(map, kDelta), 1);
            talvek::applyDeltaGrid(&positions, &normals, &deltas);
            frame = talvek::gridToMesh(&positions, true);
            positions = drawPlainly(*frame, frame->vertices);
            normals = drawPlainly(*frame, frame->vertexNormals);
        }
    });
    return positions;
}

Grid run(const Object3D& mesh, const MineralMap& map, int epochs) {
    const Grid first = drawFirst(mesh);
    talvek::GridSurface surface;
    std::unique_ptr<Object3D> frame = talvek::gridToMesh(&first, true);
    surface.resample(*frame);
    talvek::bench::measure("epochs", [&] {
        const talvek::MineralFactorGrid factors(map);
        for (int epoch = 0; epoch < epochs; ++epoch) {
            surface.move(factors.deltas(kDelta).get());
            frame = talvek::gridToMesh(&surface.positions(), true);
            surface.resample(*frame);
        }
    });
    return {kGridSize, kGridSize, 3, talvek::copyArray(surface.positions().data.get(), 3LL * kGridSize * kGridSize)};
}

/// Printed in a line that is no figure, so that the two forms can be compared.
void printChecksum(const Grid& grid) {
    std::uint64_t sum = 0;
    for (std::size_t i = 0; i < std::size_t{3} * kGridSize * kGridSize; ++i) {
        std::uint32_t bits = 0;
        std::memcpy(&bits, &grid.data[i], sizeof bits);
        sum = sum * 1099511628211U + bits;
    }
    std::printf("checksum %016llx\n", static_cast<unsigned long long>(sum));
}

}  // namespace

int main(int argc, char** argv) {
    const std::string what = argc > 3 ? argv[1] : "";
    const bool isPlain = argc > 3 && std::string(argv[2]) == "plain";
    Grid result;
    if (what == "draw") {
        const std::unique_ptr<Object3D> mesh = present(talvek::LoadMeshFile(argv[3]), argv[3]);
        talvek::bench::measure("draw",
                               [&] { result = isPlain ? drawPlainly(*mesh, mesh->vertices) : drawFirst(*mesh); });
    } else if (what == "epochs" && argc > 5) {
        const std::unique_ptr<MineralMap> map = present(talvek::readMineralMap(argv[4]), argv[4]);
        const std::unique_ptr<Object3D> mesh = present(talvek::LoadMeshFile(argv[3]), argv[3]);
        result = (isPlain ? runPlainly : run)(*mesh, *map, std::atoi(argv[5]));
    } else {
        std::fprintf(stderr, "usage: bench_grid draw library|plain MESH | epochs library|plain MESH MAP EPOCHS\n");
        return 2;
    }
    printChecksum(result);
    return 0;
}
