#include "talvek/mineral_map_file.h"

#include <cstdio>

#include "base/input_file.h"
#include "base/output_file.h"
#include "talvek/exit_status.h"
#include "talvek/messages.h"
#include "talvek/picture.h"
#include "talvek/whole_file.h"
#include "weathering/mineral_classes.h"
#include "weathering/mineral_map.h"

namespace talvek::host {

namespace {

bool isThere(const std::string& name) {
    return system::kindOf(name.c_str()) != system::FileKind::kAbsent;
}

std::string mapBytes(const std::string& from, bool& isConverted) {
    if (!isThere(from)) {
        throw Failure(kExitRefused, from + ": there is no such file to take the mineral map from");
    }
    std::string bytes = readWholeFile(from, kExitRefused);
    isConverted = !isPlainBitmap(bytes);
    return isConverted ? plainBitmap(decodePicture(bytes, from)) : bytes;
}

struct MapColours {
    std::int64_t pixels = 0;
    std::int64_t recognised = 0;
};

MapColours countColours(const MineralMap& map) {
    MapColours colours;
    colours.pixels = std::int64_t{map.width} * map.height;
    for (std::int64_t i = 0; i < colours.pixels; ++i) {
        const float* pixel = map.data.get() + 3 * i;
        colours.recognised += mineralClassOf(pixel[0], pixel[1], pixel[2]) != 0 ? 1 : 0;
    }
    return colours;
}

}  // namespace

void placeMineralMap(const std::string& from, const std::string& map, bool mayReplace) {
    bool isConverted = false;
    const std::string bytes = mapBytes(from, isConverted);
    const bool isReplaced = isThere(map);
    if (isReplaced && readWholeFile(map, kExitRefused) == bytes) {
        return;
    }
    if (isReplaced && !mayReplace) {
        throw Failure(kExitRefused,
                      map + ": another mineral map stands beside the mesh already; --replace-map replaces " +
                          "it, and without --mineral-map it is used");
    }
    OutputFile file(map.c_str());
    file.write(bytes);
    if (!file.finish()) {
        throw Failure(kExitOutput, map + ": the mineral map cannot be written");
    }
    std::printf("mineral map: %s, %s %s%s\n", map.c_str(), isConverted ? "converted from" : "copied from", from.c_str(),
                isReplaced ? ", in the place of another" : "");
}

void requireUsableMap(const std::string& map) {
    if (!isThere(map)) {
        throw Failure(kExitRefused, map + ": there is no mineral map of this name beside the mesh; give one with " +
                                        "--mineral-map, or use mode 1 (mesh)");
    }
    const std::unique_ptr<MineralMap> pixels = readMineralMap(map.c_str());
    if (pixels == nullptr) {
        throw Failure(kExitRefused, map + ": this is no bitmap that the library reads; --mineral-map converts a PNG");
    }
    if (pixels->channels != 3) {
        throw Failure(kExitRefused, map + ": the mineral map has " + std::to_string(8 * pixels->channels) +
                                        " bits per pixel; 24 are needed; --mineral-map with --replace-map converts it");
    }
    const MapColours colours = countColours(*pixels);
    if (colours.recognised == 0) {
        throw Failure(kExitRefused, map +
                                        ": no colour of the mineral map stands for a mineral, so nothing would move; " +
                                        "paint it in the colours of the user guide, without smoothing between them");
    }
    if (colours.recognised < colours.pixels) {
        const double share =
            100.0 * static_cast<double>(colours.pixels - colours.recognised) / static_cast<double>(colours.pixels);
        printWarning(map + ": " + briefNumber(share) +
                     " % of the mineral map's pixels have a colour that stands for no " +
                     "mineral; the surface does not move there");
    }
}

}  // namespace talvek::host
