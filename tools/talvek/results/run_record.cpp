#include "talvek/results/run_record.h"

#include <filesystem>
#include <nlohmann/json.hpp>
#include <system_error>

#include "base/output_file.h"
#include "talvek/results/run_record_json.h"
#include "talvek/support/exit_status.h"
#include "talvek/support/paths.h"
#include "talvek/support/whole_file.h"

namespace talvek::host {

namespace fs = std::filesystem;

RunRecord readRunRecord(const std::string& path) {
    const std::string text = readWholeFile(path, kExitParameters);
    try {
        return runRecordOf(nlohmann::json::parse(text));
    } catch (const std::exception& error) {
        throw Failure(kExitParameters, path + ": this is no record of a run: " + error.what());
    }
}

void writeRunRecord(const RunRecord& record, const std::string& path) {
    OutputFile file(path.c_str());
    // Names of files need not be UTF-8.
    file.write(jsonOf(record).dump(2, ' ', false, Json::error_handler_t::replace));
    file.write("\n");
    if (!file.finish()) {
        throw Failure(kExitOutput,
                      path + ": the record of the run cannot be written; look for its permissions and for room");
    }
}

namespace {

fs::path folderOf(const std::string& recordPath) {
    std::error_code isUnknown;
    return fs::absolute(pathOf(recordPath), isUnknown).lexically_normal().parent_path();
}

std::string withSlashes(const fs::path& path) {
    const std::u8string text = path.generic_u8string();
    return {text.begin(), text.end()};
}

}  // namespace

std::string recordedPath(const std::string& path, const std::string& recordPath) {
    if (path.empty()) {
        return {};
    }
    std::error_code isUnknown;
    const fs::path whole = fs::absolute(pathOf(path), isUnknown).lexically_normal();
    const fs::path relative = whole.lexically_relative(folderOf(recordPath));
    const bool isBelow = !relative.empty() && *relative.begin() != "..";
    return withSlashes(isBelow ? relative : whole);
}

std::string pathOfRecorded(const std::string& recorded, const std::string& recordPath) {
    if (recorded.empty()) {
        return {};
    }
    // An absolute path takes the place of the folder.
    return nameOf(pathOf(recordPath).parent_path() / pathOf(recorded));
}

}  // namespace talvek::host
