// Writes the mesh that is measured on: bench_mesh CUTS PATH [texels]
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "bumpy_sphere.h"

namespace {

void writeFaces(std::FILE* file, const talvek::bench::Surface& surface, bool withTexels) {
    for (std::size_t i = 0; i < surface.faces.size(); i += 3) {
        const int a = surface.faces[i] + 1;
        const int b = surface.faces[i + 1] + 1;
        const int c = surface.faces[i + 2] + 1;
        if (withTexels) {
            std::fprintf(file, "f %d/%d %d/%d %d/%d\n", a, a, b, b, c, c);
        } else {
            std::fprintf(file, "f %d %d %d\n", a, b, c);
        }
    }
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 3) {
        std::fprintf(stderr, "usage: bench_mesh CUTS PATH [texels]\n");
        return 2;
    }
    const bool withTexels = argc > 3 && std::strcmp(argv[3], "texels") == 0;
    const talvek::bench::Surface surface = talvek::bench::makeBumpySphere(std::atoi(argv[1]));
    std::FILE* file = std::fopen(argv[2], "w");
    if (file == nullptr) {
        std::perror(argv[2]);
        return 1;
    }
    const std::vector<float>& p = surface.positions;
    for (std::size_t i = 0; i < p.size(); i += 3) {
        std::fprintf(file, "v %.6f %.6f %.6f\n", static_cast<double>(p[i]), static_cast<double>(p[i + 1]),
                     static_cast<double>(p[i + 2]));
    }
    const std::vector<float>& t = surface.texels;
    for (std::size_t i = 0; withTexels && i < t.size(); i += 2) {
        std::fprintf(file, "vt %.6f %.6f\n", static_cast<double>(t[i]), static_cast<double>(t[i + 1]));
    }
    writeFaces(file, surface, withTexels);
    return std::fclose(file) == 0 ? 0 : 1;
}
