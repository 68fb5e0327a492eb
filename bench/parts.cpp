// The library's own parts, each alone.
//   bench_parts read MESH          reading an OBJ file
//   bench_parts write MESH PATH    writing one frame
//   bench_parts normals MESH       the normal update that every epoch makes
#include <cstdlib>
#include <memory>
#include <string>

#include "Vexo_Lib/load3d.h"
#include "Vexo_Lib/obj.h"
#include "measure.h"

namespace {

std::unique_ptr<talvek::Object3D> loaded(const char* path) {
    std::unique_ptr<talvek::Object3D> mesh = talvek::LoadMeshFile(path);
    if (mesh == nullptr) {
        std::fprintf(stderr, "%s: not read\n", path);
        std::exit(1);
    }
    return mesh;
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
    std::fprintf(stderr, "usage: bench_parts read MESH | write MESH PATH | normals MESH\n");
    return 2;
}
