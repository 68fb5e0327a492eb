#include "talvek/preflight/log_check.h"

#include "talvek/support/exit_status.h"
#include "talvek/support/same_file.h"

namespace talvek::host {

namespace {

struct NeededFile {
    std::string name;
    const char* what;
};

/// Whatever the mode, the files that belong to the mesh by their names are taken for needed.
std::vector<NeededFile> neededFiles(const RunOptions& options, const RunFiles& files, std::int32_t epochs) {
    std::vector<NeededFile> needed = {{files.mesh, "the mesh"},
                                      {files.mineralMap, "the mineral map"},
                                      {options.mineralMap, "the picture for the mineral map"},
                                      {options.config, "the parameter file"},
                                      {files.parameters, "the parameter file"},
                                      {files.log, "the run log"}};
    for (std::string& name : outputFiles(files, epochs, options.keepInputFrame)) {
        needed.push_back({std::move(name), "a frame"});
    }
    return needed;
}

}  // namespace

void requireFreeLog(const RunOptions& options, const RunFiles& files, std::int32_t epochs) {
    if (options.log.empty()) {
        return;
    }
    for (const NeededFile& file : neededFiles(options, files, epochs)) {
        if (!file.name.empty() && isSameFile(options.log, file.name)) {
            throw Failure(kExitUsage, options.log + ": --log would overwrite " + file.what + " (" + file.name +
                                          "); name another file for the library's lines");
        }
    }
}

}  // namespace talvek::host
