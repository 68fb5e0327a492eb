// Surfaces as VTK's XML files for ParaView, and the indexes that lay them along time.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "talvek/export/frame_reader.h"
#include "talvek/results/palette.h"

namespace talvek::host {

/// Writes a .vtp file with its arrays appended as raw bytes. `time` is its TimeValue. One colour for each vertex, or
/// none. Throws Failure when the file cannot be written; an old one is then untouched.
void writeVtpFrame(const ExportFrame& frame, std::span<const ColourBytes> colours, double time,
                   const std::string& path);

struct TimedFile {
    double time;
    /// As seen from the index.
    std::string name;
};

/// Write the collection that ParaView opens as one data set over time: .pvd, and the same as .vtp.series. Throw
/// Failure.
void writePvd(const std::vector<TimedFile>& files, const std::string& path);
void writeVtpSeries(const std::vector<TimedFile>& files, const std::string& path);

}  // namespace talvek::host
