// The mineral map beside a mesh.
#pragma once

#include <optional>
#include <string>

namespace talvek::host {

/// A mineral map that is usable, and that is not beside the mesh yet.
struct MapToPlace {
    std::string from;
    std::string path;
    std::string bytes;
    bool isConverted = false;
    bool isReplacing = false;
};

/// The picture `from` as it is to stand in `map`, where the library looks for the mesh's mineral map; nothing when it
/// stands there already. Warns of colours that stand for no mineral. Throws Failure when the picture is unusable, or
/// when another map stands there and `mayReplace` is not set. Writes nothing.
std::optional<MapToPlace> usableMapFrom(const std::string& from, const std::string& map, bool mayReplace);

/// Puts the map in place and says so. Throws Failure, the file that was there being as it was.
void placeMap(const MapToPlace& map);

/// Throws Failure unless the map is there, readable and shows at least one mineral. Warns of colours that stand for
/// none, and of rows in the wrong order.
void requireUsableMap(const std::string& map);

}  // namespace talvek::host
