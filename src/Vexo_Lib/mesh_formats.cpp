#include "Vexo_Lib/mesh_formats.h"

#include <algorithm>

#include "Vexo_Lib/bin.h"
#include "Vexo_Lib/fim.h"
#include "Vexo_Lib/obj.h"
#include "Vexo_Lib/sas.h"
#include "Vexo_Lib/wrl.h"

namespace talvek {

namespace {

std::unique_ptr<Object3D> readObj(const char* path) {
    return ReadObjFile(path, true);
}

std::unique_ptr<Object3D> readWrl(const char* path) {
    return ReadWrlFile(path, true);
}

constexpr MeshFormat kFormats[] = {
    {".obj", "Wavefront OBJ", readObj, readObj}, {".wrl", "VRML", readWrl, readWrl},
    {".sas", "SAS", LoadSasFile, readSasFile},   {".bin", "BIN", ReadBinFile, ReadBinFile},
    {".fim", "FIM", LoadFimFile, LoadFimFile},
};

char upperCase(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

}  // namespace

std::span<const MeshFormat> meshFormats() {
    return kFormats;
}

const MeshFormat* meshFormatOf(std::string_view path) {
    const std::size_t dot = path.rfind('.');
    const std::string_view extension = dot == std::string_view::npos ? std::string_view() : path.substr(dot);
    const MeshFormat* const format = std::ranges::find_if(kFormats, [extension](const MeshFormat& row) {
        return extension == row.extension || std::ranges::equal(extension, row.extension, {}, {}, upperCase);
    });
    return format != std::end(kFormats) ? format : nullptr;
}

}  // namespace talvek
