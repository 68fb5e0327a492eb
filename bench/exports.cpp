// Surfaces for other programs, with all that is told of their vertices.
//   bench_exports ply|vtp MESH PATH
#include <cstdlib>
#include <memory>
#include <string>

#include "Vexo_Lib/load3d.h"
#include "measure.h"
#include "mesh/shape_index.h"
#include "talvek/export/ply_frame.h"
#include "talvek/export/vtp_frame.h"

int main(int argc, char** argv) {
    const std::string what = argc > 3 ? argv[1] : "";
    if (what != "ply" && what != "vtp") {
        std::fprintf(stderr, "usage: bench_exports ply|vtp MESH PATH\n");
        return 2;
    }
    const std::unique_ptr<talvek::Object3D> mesh = talvek::LoadMeshFile(argv[2]);
    if (mesh == nullptr) {
        std::fprintf(stderr, "%s: not read\n", argv[2]);
        return 1;
    }
    talvek::ShapeIndex(mesh.get(), talvek::ShapeIndex::History::kForgotten).computeMeanAndGaussian();
    talvek::host::ExportFrame frame;
    frame.mesh = mesh.get();
    const std::span<const float> heights = {mesh->meanCurvature.get(), static_cast<std::size_t>(mesh->numVertices)};
    frame.displacements.assign(heights.begin(), heights.end());
    frame.deltas = frame.displacements;
    frame.minerals.assign(heights.size(), 1);
    talvek::bench::measure(argv[1], [&] {
        if (what == "ply") {
            talvek::host::writePlyFrame(frame, {}, argv[3]);
        } else {
            talvek::host::writeVtpFrame(frame, {}, 0, argv[3]);
        }
    });
    return 0;
}
