// Lines of the run log that programs read, and so must not change on one side alone.
#pragma once

#include <string_view>

namespace talvek {

/// The number of the epoch that begins follows.
inline constexpr std::string_view kEpochLineStart = "epoch: ";

/// The name of the mineral map stands between the start and one of the ends.
inline constexpr std::string_view kMapLineStart = "Mineral map ";
inline constexpr std::string_view kMapLoadedEnd = " loaded!";
inline constexpr std::string_view kMapNotLoadedEnd = " NOT loaded!";

}  // namespace talvek
