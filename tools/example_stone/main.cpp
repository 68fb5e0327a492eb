// talvek-example-stone: makes the carved block that the first example weathers, and its mineral map.
#include <cstdio>
#include <exception>
#include <string>

#include "example_stone/carved_block.h"
#include "example_stone/mineral_map.h"
#include "example_stone/stone_files.h"

namespace {

constexpr int kExitFailed = 1;
constexpr int kExitUsage = 2;

bool write(const std::string& name, const std::string& bytes) {
    if (talvek::example::writeFile(name, bytes)) {
        return true;
    }
    std::fprintf(stderr, "talvek-example-stone: cannot write %s\n", name.c_str());
    return false;
}

int makeStone(const std::string& objName) {
    const std::string mapName = talvek::example::mapFileName(objName);
    const talvek::example::StoneMesh mesh = talvek::example::makeCarvedBlock();
    const talvek::example::MineralMap map = talvek::example::makeMineralMap();
    if (!write(objName, talvek::example::objText(mesh)) || !write(mapName, talvek::example::bitmapBytes(map))) {
        return kExitFailed;
    }
    std::printf("%s: %zu vertices, %zu faces; %s: %d x %d pixels\n", objName.c_str(), mesh.positions.size(),
                mesh.faces.size(), mapName.c_str(), map.width, map.height);
    return 0;
}

int printUsage() {
    std::fputs(
        "Usage: talvek-example-stone OUT.obj\n"
        "Makes a carved block of stone: the mesh OUT.obj, in millimetres, and beside it its mineral map OUT.bmp.\n",
        stderr);
    return kExitUsage;
}

}  // namespace

int main(int argc, char** argv) {
    try {
        return argc == 2 && talvek::example::isObjName(argv[1]) ? makeStone(argv[1]) : printUsage();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "talvek-example-stone: %s\n", error.what());
        return kExitFailed;
    }
}
