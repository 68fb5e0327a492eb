// The program that one would write without a thought for speed: fscanf, fprintf and the same arithmetic.
//   bench_plain run MESH EPOCHS    mode 1, model 3 with the default parameters, the same files as the library's run
//   bench_plain read MESH          reading by tokens
//   bench_plain write MESH PATH    writing one frame of the mesh
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "measure.h"

namespace {

struct Mesh {
    std::vector<float> positions;
    std::vector<float> normals;
    std::vector<int> faces;
};

void readFace(std::FILE* file, Mesh& mesh) {
    char corner[256];
    for (int i = 0; i < 3 && std::fscanf(file, "%255s", corner) == 1; ++i) {
        mesh.faces.push_back(std::atoi(corner) - 1);
    }
}

Mesh readMesh(const char* path) {
    Mesh mesh;
    std::FILE* file = std::fopen(path, "r");
    if (file == nullptr) {
        std::perror(path);
        std::exit(1);
    }
    char token[256];
    while (std::fscanf(file, "%255s", token) == 1) {
        if (std::strcmp(token, "v") == 0) {
            float x = 0;
            float y = 0;
            float z = 0;
            if (std::fscanf(file, "%f%f%f", &x, &y, &z) == 3) {
                mesh.positions.insert(mesh.positions.end(), {x, y, z});
            }
        } else if (std::strcmp(token, "f") == 0) {
            readFace(file, mesh);
        }
    }
    std::fclose(file);
    return mesh;
}

void faceNormal(const Mesh& mesh, std::size_t face, float* n) {
    const float* a = &mesh.positions[3 * static_cast<std::size_t>(mesh.faces[3 * face])];
    const float* b = &mesh.positions[3 * static_cast<std::size_t>(mesh.faces[3 * face + 1])];
    const float* c = &mesh.positions[3 * static_cast<std::size_t>(mesh.faces[3 * face + 2])];
    n[0] = (a[1] - b[1]) * (b[2] - c[2]) - (a[2] - b[2]) * (b[1] - c[1]);
    n[1] = (a[2] - b[2]) * (b[0] - c[0]) - (a[0] - b[0]) * (b[2] - c[2]);
    n[2] = (a[0] - b[0]) * (b[1] - c[1]) - (a[1] - b[1]) * (b[0] - c[0]);
    float length = std::sqrt(n[0] * n[0] + n[1] * n[1] + n[2] * n[2]);
    if (length <= 1.0e-7F) {
        length = 1;
    }
    for (int k = 0; k < 3; ++k) {
        n[k] /= length;
    }
}

void updateNormals(Mesh& mesh) {
    mesh.normals.assign(mesh.positions.size(), 0);
    std::vector<int> counts(mesh.positions.size() / 3);
    for (std::size_t face = 0; face < mesh.faces.size() / 3; ++face) {
        float n[3];
        faceNormal(mesh, face, n);
        for (std::size_t corner = 0; corner < 3; ++corner) {
            const auto vertex = static_cast<std::size_t>(mesh.faces[3 * face + corner]);
            for (std::size_t k = 0; k < 3; ++k) {
                mesh.normals[3 * vertex + k] += n[k];
            }
            ++counts[vertex];
        }
    }
    for (std::size_t vertex = 0; vertex < counts.size(); ++vertex) {
        float* n = &mesh.normals[3 * vertex];
        const auto count = static_cast<float>(counts[vertex]);
        if (count == 0) {
            continue;
        }
        for (int k = 0; k < 3; ++k) {
            n[k] /= count;
        }
        const float length = std::sqrt(n[0] * n[0] + n[1] * n[1] + n[2] * n[2]);
        for (int k = 0; k < 3; ++k) {
            n[k] = length == 0 ? 0 : n[k] / length;
        }
    }
}

void writeMesh(const Mesh& mesh, const char* path) {
    std::FILE* file = std::fopen(path, "w");
    const auto numVertices = static_cast<int>(mesh.positions.size() / 3);
    const auto numFaces = static_cast<int>(mesh.faces.size() / 3);
    std::fprintf(file, "#\n# Obj file created by QN Lib\n#\n# %d vertices\n# %d normals\n", numVertices, numVertices);
    for (std::size_t i = 0; i < mesh.positions.size(); i += 3) {
        const float* p = &mesh.positions[i];
        const float* n = &mesh.normals[i];
        std::fprintf(file, "v %.6f %.6f %.6f\n", static_cast<double>(p[0]), static_cast<double>(p[1]),
                     static_cast<double>(p[2]));
        std::fprintf(file, "vn %.6f %.6f %.6f\n", static_cast<double>(n[0]), static_cast<double>(n[1]),
                     static_cast<double>(n[2]));
    }
    std::fprintf(file, "# %d triangles\n", numFaces);
    for (std::size_t i = 0; i < mesh.faces.size(); i += 3) {
        std::fprintf(file, "f %d %d %d\n", mesh.faces[i] + 1, mesh.faces[i + 1] + 1, mesh.faces[i + 2] + 1);
    }
    std::fclose(file);
}

/// The recession of a year with the parameters that a session starts with.
float recession() {
    const double days = 365;
    const double so2 = static_cast<double>(1.0e-13F * 4.09F);
    const double no2 = static_cast<double>(1.0e-13F * 10.23F);
    const double dry = 10000.0 * (2 * 2452.0) * std::pow(so2, static_cast<double>(0.7F)) *
                       std::pow(no2, static_cast<double>(0.3F)) * static_cast<double>(100.9F) * (days * 24) /
                       static_cast<double>(2.714F);
    const double wet = (static_cast<double>(27.38F) * std::pow(10.0, 3 - 4.5) + static_cast<double>(6.56F)) *
                       static_cast<double>(1.13F) * (days / 365);
    return static_cast<float>((dry + wet) / -1000.0);
}

void run(const std::string& path, int epochs) {
    Mesh mesh = readMesh(path.c_str());
    updateNormals(mesh);
    const Mesh first = mesh;
    const float delta = recession();
    for (int epoch = 1; epoch <= epochs; ++epoch) {
        for (std::size_t i = 0; i < mesh.positions.size(); ++i) {
            mesh.positions[i] += delta * mesh.normals[i];
        }
        updateNormals(mesh);
        writeMesh(mesh, (path + ".obj_w_" + std::to_string(epoch) + ".obj").c_str());
    }
    writeMesh(first, (path + ".obj_i.obj").c_str());
    writeMesh(mesh, (path + ".obj_w.obj").c_str());
}

}  // namespace

int main(int argc, char** argv) {
    const std::string what = argc > 2 ? argv[1] : "";
    if (what == "run" && argc > 3) {
        talvek::bench::measure("run", [&] { run(argv[2], std::atoi(argv[3])); });
        return 0;
    }
    if (what == "read") {
        Mesh mesh;
        talvek::bench::measure("read", [&] { mesh = readMesh(argv[2]); });
        return mesh.faces.empty() ? 1 : 0;
    }
    if (what == "write" && argc > 3) {
        Mesh mesh = readMesh(argv[2]);
        updateNormals(mesh);
        talvek::bench::measure("write", [&] { writeMesh(mesh, argv[3]); });
        return 0;
    }
    std::fprintf(stderr, "usage: bench_plain run MESH EPOCHS | read MESH | write MESH PATH\n");
    return 2;
}
