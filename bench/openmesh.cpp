// The same work with OpenMesh.
//   bench_openmesh run MESH EPOCHS    its reader, its normals, frames by fprintf
//   bench_openmesh normals MESH       its update_normals alone
#include <cstdint>
#include <cstdlib>
#include <string>

// Its headers have to be included in this order.
#include <OpenMesh/Core/IO/MeshIO.hh>
#include <OpenMesh/Core/Mesh/TriMesh_ArrayKernelT.hh>

#include "measure.h"

namespace {

using Mesh = OpenMesh::TriMesh_ArrayKernelT<>;

void readMesh(Mesh& mesh, const char* path) {
    mesh.request_face_normals();
    mesh.request_vertex_normals();
    if (!OpenMesh::IO::read_mesh(mesh, path)) {
        std::fprintf(stderr, "%s: not read\n", path);
        std::exit(1);
    }
}

void writeMesh(const Mesh& mesh, const std::string& path) {
    std::FILE* file = std::fopen(path.c_str(), "w");
    std::fprintf(file, "# %zu vertices\n", mesh.n_vertices());
    for (const auto vertex : mesh.vertices()) {
        const Mesh::Point& p = mesh.point(vertex);
        const Mesh::Normal& n = mesh.normal(vertex);
        std::fprintf(file, "v %.6f %.6f %.6f\n", static_cast<double>(p[0]), static_cast<double>(p[1]),
                     static_cast<double>(p[2]));
        std::fprintf(file, "vn %.6f %.6f %.6f\n", static_cast<double>(n[0]), static_cast<double>(n[1]),
                     static_cast<double>(n[2]));
    }
    for (const auto face : mesh.faces()) {
        std::fputc('f', file);
        for (const auto vertex : face.vertices()) {
            std::fprintf(file, " %d", vertex.idx() + 1);
        }
        std::fputc('\n', file);
    }
    std::fclose(file);
}

void run(const std::string& path, int epochs) {
    Mesh mesh;
    readMesh(mesh, path.c_str());
    mesh.update_normals();
    const Mesh first = mesh;
    for (int epoch = 1; epoch <= epochs; ++epoch) {
        for (const auto vertex : mesh.vertices()) {
            mesh.set_point(vertex, mesh.point(vertex) - mesh.normal(vertex) * 0.01F);
        }
        mesh.update_normals();
        writeMesh(mesh, path + ".obj_w_" + std::to_string(epoch) + ".obj");
    }
    writeMesh(first, path + ".obj_i.obj");
    writeMesh(mesh, path + ".obj_w.obj");
}

}  // namespace

int main(int argc, char** argv) {
    const std::string what = argc > 2 ? argv[1] : "";
    if (what == "run" && argc > 3) {
        talvek::bench::measure("run", [&] { run(argv[2], std::atoi(argv[3])); });
        return 0;
    }
    if (what == "normals") {
        Mesh mesh;
        readMesh(mesh, argv[2]);
        mesh.update_normals();
        talvek::bench::measure("normals", [&] { mesh.update_normals(); });
        return 0;
    }
    std::fprintf(stderr, "usage: bench_openmesh run MESH EPOCHS | normals MESH\n");
    return 2;
}
