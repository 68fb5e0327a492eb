// The files that a run reads and writes, by their names.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace talvek::host {

struct RunOptions;

struct RunFiles {
    RunFiles() = default;
    /// Every file stands beside the mesh.
    explicit RunFiles(const std::string& meshName);
    /// Every file stands beside the library's mesh. With `hasOwnFolder` the folder is the run's alone.
    RunFiles(std::string sourceName, std::string meshName, bool hasOwnFolder);

    std::string frame(std::int32_t number) const;

    /// The mesh that the user named.
    std::string source;
    /// The mesh that the library reads: the source itself, or what is made of it.
    std::string mesh;
    std::string mineralMap;
    /// Where --save-config writes.
    std::string parameters;
    std::string log;
    /// The record of the run.
    std::string record;
    std::string firstSurface;
    std::string lastSurface;
    /// Never empty.
    std::filesystem::path folder;
};

/// The files of a run: beside the mesh, or in the folder that the options name.
RunFiles filesOfRun(const RunOptions& options, bool isSourceRead = true);

/// The frames of a run in order, then the first and the last surface.
std::vector<std::string> outputFiles(const RunFiles& files, std::int32_t epochs, bool withInputFrame);

}  // namespace talvek::host
