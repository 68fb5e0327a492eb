// Reading with tinyobjloader: bench_tinyobj MESH
#include <tiny_obj_loader.h>

#include "measure.h"

int main(int argc, char** argv) {
    if (argc < 2) {
        std::fprintf(stderr, "usage: bench_tinyobj MESH\n");
        return 2;
    }
    tinyobj::attrib_t attributes;
    std::vector<tinyobj::shape_t> shapes;
    std::vector<tinyobj::material_t> materials;
    std::string warnings;
    std::string errors;
    bool isRead = false;
    talvek::bench::measure(
        "read", [&] { isRead = tinyobj::LoadObj(&attributes, &shapes, &materials, &warnings, &errors, argv[1]); });
    return isRead && !shapes.empty() ? 0 : 1;
}
