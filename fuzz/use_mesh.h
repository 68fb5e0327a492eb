// What a run does with a mesh, so that a mesh that only looks right is found out.
#pragma once

#include <cstddef>
#include <cstdint>

namespace talvek::fuzz {

/// Loads the input as a mesh file of this name and, if that succeeds, weathers the mesh and writes it.
void loadAndUse(const char* name, const std::uint8_t* data, std::size_t size);

}  // namespace talvek::fuzz
