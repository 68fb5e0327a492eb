// The files that a run reads and writes, by their names.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace talvek::host {

struct RunFiles {
    explicit RunFiles(std::string meshName);

    std::string frame(std::int32_t number) const;

    std::string mesh;
    std::string mineralMap;
    /// Where --save-config writes.
    std::string parameters;
    std::string log;
    std::string firstSurface;
    std::string lastSurface;
    /// Never empty.
    std::filesystem::path folder;
};

/// The frames of a run in order, then the first and the last surface.
std::vector<std::string> outputFiles(const RunFiles& files, std::int32_t epochs, bool withInputFrame);

/// Removes what a process that was ended in the middle of writing has left in the folder. Files are written under such
/// names first, so no frame is touched.
void removeUnfinishedFiles(const std::filesystem::path& folder, std::uint64_t processId);

}  // namespace talvek::host
