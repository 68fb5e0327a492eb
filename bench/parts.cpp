// The library's own parts, each alone.
//   bench_parts read MESH          reading an OBJ file
//   bench_parts write MESH PATH    writing one frame
//   bench_parts normals MESH       the normal update that every epoch makes
//   bench_parts curvature MESH     the curvature of every vertex, given its neighbours
//   bench_parts all-curvature MESH the same with collecting and ordering the neighbours
#include <cstdlib>
#include <memory>
#include <string>

#include "Vexo_Lib/load3d.h"
#include "Vexo_Lib/obj.h"
#include "measure.h"
#include "mesh/shape_index.h"

namespace {

std::unique_ptr<talvek::Object3D> loaded(const char* path) {
    std::unique_ptr<talvek::Object3D> mesh = talvek::LoadMeshFile(path);
    if (mesh == nullptr) {
        std::fprintf(stderr, "%s: not read\n", path);
        std::exit(1);
    }
    return mesh;
}

void measureCurvature(talvek::Object3D& mesh, bool withRings) {
    std::unique_ptr<talvek::ShapeIndex> shapeIndex;
    const auto collectRings = [&] {
        shapeIndex = std::make_unique<talvek::ShapeIndex>(&mesh, talvek::ShapeIndex::History::kForgotten);
    };
    if (!withRings) {
        collectRings();
    }
    talvek::bench::measure("curvature", [&] {
        if (withRings) {
            collectRings();
        }
        shapeIndex->computeMeanAndGaussian();
    });
}

}  // namespace

int main(int argc, char** argv) {
    const std::string what = argc > 2 ? argv[1] : "";
    std::unique_ptr<talvek::Object3D> mesh;
    if (what == "read") {
        talvek::bench::measure("read", [&] { mesh = talvek::ReadObjFile(argv[2], true); });
        return mesh != nullptr && mesh->numFaces > 0 ? 0 : 1;
    }
    if (what == "write" && argc > 3) {
        mesh = loaded(argv[2]);
        talvek::bench::measure("write", [&] { talvek::WriteObjFileWithNormals(*mesh, argv[3]); });
        return 0;
    }
    if (what == "normals") {
        mesh = loaded(argv[2]);
        talvek::bench::measure("normals", [&] { mesh->updateVertexNormals(); });
        return 0;
    }
    if (what == "curvature" || what == "all-curvature") {
        mesh = loaded(argv[2]);
        measureCurvature(*mesh, what == "all-curvature");
        return 0;
    }
    std::fprintf(stderr, "usage: bench_parts read|normals|curvature|all-curvature MESH | write MESH PATH\n");
    return 2;
}
