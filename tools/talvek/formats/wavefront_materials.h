// The materials of an OBJ file, by their names.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "talvek/formats/imported_mesh.h"

namespace talvek::host {

class WavefrontMaterials {
  public:
    /// Adds those of a material file that the mesh at `mesh` names. One that is not there adds none.
    void read(const std::string& mesh, std::string_view library);

    /// The number of a material; one that no file describes has its name only.
    std::int32_t numberOf(std::string_view name);

    std::vector<MeshMaterial> take() { return std::move(materials_); }

  private:
    void readLine(std::string_view line);

    std::vector<MeshMaterial> materials_;
    std::map<std::string, std::int32_t, std::less<>> numbers_;
    /// The one that lines describe, -1 before the first.
    std::int32_t current_ = -1;
};

}  // namespace talvek::host
