// What is kept of a run beside its frames: what went in, what came out, and how to tell that it is still the same.
// docs/json.md describes the file.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "talvek.h"

namespace talvek::host {

/// Raised when a member of the record changes its meaning or goes, not when one is added.
inline constexpr int kRunRecordVersion = 1;

/// A file of a run. Its path is relative to the record's folder where it stands there, and absolute elsewhere; '/'
/// divides its parts on every platform. Empty where the run has no such file.
struct RecordedFile {
    std::string path;
    std::uint64_t bytes = 0;
    /// SHA-256 in hexadecimal; empty where the file was not kept or not looked at.
    std::string sha256;
};

/// How a surface differs from the one the run began with. Displacements are signed: positive outwards, in millimetres.
struct SurfaceFigures {
    double mean = 0;
    /// Each vertex weighted by the area around it.
    double areaWeightedMean = 0;
    double smallest = 0;
    double largest = 0;
    /// 1, 5, 25, 50, 75, 95 and 99 per cent of the vertices have moved by this or less.
    std::array<double, 7> percentiles{};
    /// Square and cubic millimetres; the volume of closed surfaces only.
    double area = 0;
    std::optional<double> volume;
};

struct RecordedEpoch {
    double days = 0;
    /// "2001-01-01" and the note, where a table of epochs gave them.
    std::string start;
    std::string end;
    std::string note;
    /// SO2, NO2, Rv, RpH; in mode 0 the offset, the mean, the spread and the smoothing amount.
    std::array<double, TALVEK_EPOCH_PARAMS> values{};
    /// The distance that the surface moves, in millimetres; nothing where it differs from vertex to vertex.
    std::optional<double> delta;
    /// Without a path where the frame was not kept.
    RecordedFile frame;
    std::optional<SurfaceFigures> figures;
};

enum class RunOutcome : std::uint8_t { kUnfinished, kWhole, kCancelled, kFailed };

struct RunRecord {
    int version = kRunRecordVersion;
    /// "talvek 2.2.0"
    std::string program;
    /// Universal time, "2026-01-31T12:00:00Z".
    std::string begun;
    std::string ended;
    RunOutcome outcome = RunOutcome::kUnfinished;

    /// The mesh that the user named, and the one that the library read where that is another file.
    RecordedFile source;
    RecordedFile engineMesh;
    RecordedFile mineralMap;
    RecordedFile parameterFile;
    RecordedFile epochTable;
    /// A millimetre of the library's mesh is `unit` lengths of the source's, and its origin lies at `offset` there.
    std::string unit = "mm";
    std::array<double, 3> offset{};

    std::int32_t mode = 0;
    std::int32_t model = 0;
    std::array<double, TALVEK_MATERIAL_PARAMS> material{};
    std::vector<RecordedEpoch> epochs;

    /// Frame 0, where it was asked for.
    RecordedFile inputFrame;
    RecordedFile firstSurface;
    RecordedFile lastSurface;
    RecordedFile log;
    /// What the first surface measures; displacements are 0 there.
    std::optional<SurfaceFigures> figuresBefore;
    std::optional<SurfaceFigures> figures;
    std::vector<std::string> warnings;
};

/// Throws Failure when the file cannot be read, is no record of a run, or is of a later version.
RunRecord readRunRecord(const std::string& path);

/// Throws Failure when the file cannot be written.
void writeRunRecord(const RunRecord& record, const std::string& path);

/// A path as a record in `recordPath` has it, and back.
std::string recordedPath(const std::string& path, const std::string& recordPath);
std::string pathOfRecorded(const std::string& recorded, const std::string& recordPath);

}  // namespace talvek::host
