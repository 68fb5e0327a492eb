#include "talvek/mineral_map/mineral_map_file.h"

#include "base/output_file.h"
#include "talvek/mineral_map/bitmap_file.h"
#include "talvek/mineral_map/picture.h"
#include "talvek/support/exit_status.h"
#include "talvek/support/messages.h"
#include "talvek/support/same_file.h"
#include "talvek/support/whole_file.h"
#include "weathering/mineral_classes.h"
#include "weathering/mineral_map.h"

namespace talvek::host {

namespace {

/// Whether a file is there. Throws Failure for what is there and no file.
bool isFile(const std::string& name) {
    const system::FileKind kind = system::kindOf(name.c_str());
    if (kind == system::FileKind::kOther) {
        throw Failure(kExitRefused, name + ": this is no file but a folder or a device");
    }
    return kind == system::FileKind::kRegular;
}

BitmapKind kindOfFile(const std::string& name) {
    return bitmapKindOf(readBeginning(name, kBitmapHeadersSize, kExitRefused));
}

/// Counts the pixels whose class is that of a mineral.
template <typename ClassOfPixel>
void requireMinerals(const std::string& name, std::int64_t pixels, ClassOfPixel classOf) {
    std::int64_t unknown = 0;
    for (std::int64_t i = 0; i < pixels; ++i) {
        unknown += classOf(i) == 0 ? 1 : 0;
    }
    if (unknown == pixels) {
        throw Failure(kExitRefused, name +
                                        ": no colour of the mineral map stands for a mineral, so nothing would move; " +
                                        "paint it in the colours of the user guide, without smoothing between them");
    }
    if (unknown > 0) {
        printWarning(name + ": " + briefNumber(100.0 * static_cast<double>(unknown) / static_cast<double>(pixels)) +
                     " % of the mineral map's pixels have a colour that stands for no " +
                     "mineral; the surface does not move there");
    }
}

/// A bitmap of the kind that the library reads, as the library reads it.
void requireMineralsInBitmap(const std::string& name) {
    const std::unique_ptr<MineralMap> map = readMineralMap(name.c_str());
    if (map == nullptr) {
        throw Failure(kExitRefused, name + ": the bitmap is damaged or cut short; export it again");
    }
    requireMinerals(name, std::int64_t{map->width} * map->height, [&map](std::int64_t i) {
        const float* pixel = map->data.get() + 3 * i;
        return mineralClassOf(pixel[0], pixel[1], pixel[2]);
    });
}

std::string convertedMap(const std::string& from) {
    const Picture picture = decodePicture(readWholeFile(from, kExitRefused), from);
    requireMinerals(from, std::int64_t{picture.width} * picture.height, [&picture](std::int64_t i) {
        const std::uint8_t* colour = picture.colours.data() + kColours * static_cast<std::size_t>(i);
        return mineralClassOf(colour[2], colour[1], colour[0]);
    });
    return plainBitmap(picture);
}

[[noreturn]] void refuseToReplace(const MapToPlace& map) {
    if (isSameFile(map.from, map.path)) {
        throw Failure(kExitRefused, map.path + ": the mineral map itself would be converted; --replace-map allows it");
    }
    throw Failure(kExitRefused, map.path +
                                    ": another mineral map stands beside the mesh already; --replace-map replaces " +
                                    "it, and without --mineral-map it is used");
}

}  // namespace

std::optional<MapToPlace> usableMapFrom(const std::string& from, const std::string& map, bool mayReplace) {
    if (!isFile(from)) {
        throw Failure(kExitRefused, from + ": there is no such file to take the mineral map from");
    }
    MapToPlace placed{.from = from, .path = map, .bytes = {}};
    placed.isConverted = kindOfFile(from) != BitmapKind::kPlain;
    if (placed.isConverted) {
        placed.bytes = convertedMap(from);
    } else {
        requireMineralsInBitmap(from);
        placed.bytes = readWholeFile(from, kExitRefused);
    }
    placed.isReplacing = isFile(map);
    if (placed.isReplacing && readWholeFile(map, kExitRefused) == placed.bytes) {
        return std::nullopt;
    }
    if (placed.isReplacing && !mayReplace) {
        refuseToReplace(placed);
    }
    return placed;
}

void placeMap(const MapToPlace& map) {
    const bool isItself = isSameFile(map.from, map.path);
    OutputFile file(map.path.c_str(), Durability::kOnDisk);
    file.write(map.bytes);
    if (!file.finish()) {
        throw Failure(kExitOutput, map.path +
                                       ": the mineral map cannot be written; look for its permissions and for room on "
                                       "the disk");
    }
    say("mineral map: " + map.path + ", " +
        (isItself ? "converted"
                  : (map.isConverted ? "converted from " : "copied from ") + map.from +
                        (map.isReplacing ? ", in the place of another" : "")));
}

void requireUsableMap(const std::string& map) {
    if (!isFile(map)) {
        throw Failure(kExitRefused, map + ": there is no mineral map of this name beside the mesh; give one with " +
                                        "--mineral-map, or use mode 1 (mesh)");
    }
    const BitmapKind kind = kindOfFile(map);
    if (kind == BitmapKind::kNone || kind == BitmapKind::kOther) {
        // What cannot be converted either has reasons of its own, which this says.
        static_cast<void>(convertedMap(map));
        throw Failure(kExitRefused, map + ": the library does not read this kind of picture; --mineral-map " + map +
                                        " --replace-map converts it");
    }
    requireMineralsInBitmap(map);
    if (kind == BitmapKind::kTopDown) {
        printWarning(map +
                     ": this bitmap's top row stands first, and the library takes the first row for the bottom one, "
                     "so the map lies on the mesh upside down; --mineral-map " +
                     map + " --replace-map puts it right");
    }
}

}  // namespace talvek::host
