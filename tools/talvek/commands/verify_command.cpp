#include "talvek/commands/verify_command.h"

#include <CLI/CLI.hpp>
#include <cstdio>
#include <memory>
#include <string>

#include "base/system.h"
#include "talvek/results/run_record.h"
#include "talvek/support/exit_status.h"
#include "talvek/support/messages.h"
#include "talvek/support/sha256.h"

namespace talvek::host {

namespace {

/// Compares files with a record and counts what it finds.
class Comparison {
  public:
    explicit Comparison(std::string recordPath) : recordPath_(std::move(recordPath)) {}

    /// A file without a sum has not been kept, or the run did not get that far.
    void compare(const RecordedFile& file) {
        if (file.path.empty() || file.sha256.empty()) {
            return;
        }
        ++compared_;
        const std::string name = pathOfRecorded(file.path, recordPath_);
        if (system::kindOf(name.c_str()) != system::FileKind::kRegular) {
            find(name + ": the file is not there");
            return;
        }
        const FileSum sum = sumOf(name);
        if (sum.sha256 != file.sha256) {
            find(name + ": the file has changed" +
                 (sum.bytes != file.bytes
                      ? "; it has " + std::to_string(sum.bytes) + " bytes, and had " + std::to_string(file.bytes)
                      : ""));
        }
    }

    std::uint64_t compared() const { return compared_; }
    std::uint64_t found() const { return found_; }

  private:
    void find(const std::string& sentence) {
        ++found_;
        std::printf("%s\n", sentence.c_str());
    }

    std::string recordPath_;
    std::uint64_t compared_ = 0;
    std::uint64_t found_ = 0;
};

const char* outcomeText(RunOutcome outcome) {
    switch (outcome) {
        case RunOutcome::kWhole:
            return "";
        case RunOutcome::kCancelled:
            return "; the run was cancelled";
        case RunOutcome::kFailed:
            return "; the run failed";
        default:
            return "; the run has not ended, or was ended from outside";
    }
}

int verifyCommand(const std::string& path) {
    const RunRecord record = readRunRecord(path);
    Comparison comparison(path);
    for (const RecordedFile* const file : {&record.source, &record.engineMesh, &record.mineralMap,
                                           &record.parameterFile, &record.epochTable, &record.inputFrame}) {
        comparison.compare(*file);
    }
    for (const RecordedEpoch& epoch : record.epochs) {
        comparison.compare(epoch.frame);
    }
    for (const RecordedFile* const file : {&record.firstSurface, &record.lastSurface, &record.log}) {
        comparison.compare(*file);
    }
    const std::string files = countOf(comparison.compared(), "file");
    std::printf(
        "%s: %s%s\n", path.c_str(),
        comparison.found() == 0
            ? (files + " compared, all as the run left them").c_str()
            : (files + " compared, " + std::to_string(comparison.found()) + " not as the run left them").c_str(),
        outcomeText(record.outcome));
    const bool isWhole = record.outcome == RunOutcome::kWhole;
    return comparison.found() == 0 && isWhole ? kExitDone : kExitFindings;
}

}  // namespace

void addVerifyCommand(CommandSet& commands) {
    const auto path = std::make_shared<std::string>();
    CLI::App& verify =
        commands.add("verify", "Compare the files of a run with its record", [path] { return verifyCommand(*path); });
    addFileArgument(verify, *path, "RECORD", "Record of a run: run.json, or the mesh's name with .run.json");
}

}  // namespace talvek::host
