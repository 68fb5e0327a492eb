// The record of a run as JSON and back.
#pragma once

#include <nlohmann/json.hpp>

#include "talvek/results/run_record.h"

namespace talvek::host {

/// Members keep their order, for people read the file too.
using Json = nlohmann::ordered_json;

/// null for numbers that JSON has no notation for.
Json jsonOf(double value);
Json jsonOf(const RecordedFile& file);
Json jsonOf(const SurfaceFigures& figures);
/// `isOffsetting` says how the four values are called.
Json jsonOf(const RecordedEpoch& epoch, std::size_t number, bool isOffsetting);
/// The eight values by their names.
Json materialJson(const std::array<double, TALVEK_MATERIAL_PARAMS>& material);
Json jsonOf(const RunRecord& record);

/// Throws std::exception for what is missing or of another kind, and for a later version.
RunRecord runRecordOf(const nlohmann::json& json);

}  // namespace talvek::host
