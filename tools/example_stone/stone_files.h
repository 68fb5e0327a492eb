// The two files of the example stone: their names, and writing them.
#pragma once

#include <string>

namespace talvek::example {

/// True of names that end in ".obj", in lower or upper case.
bool isObjName(const std::string& name);

/// The mesh file's name with its extension replaced by ".bmp": where the mineral map is looked for.
std::string mapFileName(const std::string& objName);

/// Replaces a file's contents with exactly these bytes; false if any of them could not be written.
bool writeFile(const std::string& name, const std::string& bytes);

}  // namespace talvek::example
