// The mesh formats that are read: one row for each.
#pragma once

#include <memory>
#include <span>
#include <string_view>

#include "mesh/object3d.h"

namespace talvek {

using MeshReader = std::unique_ptr<Object3D> (*)(const char* path);

struct MeshFormat {
    /// How names of such files end, in lower case; all in upper case does as well.
    std::string_view extension;
    /// What people call it.
    std::string_view name;
    /// What a run reads the file with.
    MeshReader load;
    /// The same for a look at the file, which stays as it is.
    MeshReader inspect;
};

std::span<const MeshFormat> meshFormats();

/// The row that a file's name belongs to; null where there is none.
const MeshFormat* meshFormatOf(std::string_view path);

}  // namespace talvek
