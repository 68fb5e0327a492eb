// What the user asks of a run.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "talvek.h"
#include "talvek/formats/import_mesh.h"
#include "talvek/plan/epoch_table.h"

namespace CLI {  // NOLINT(readability-identifier-naming): the name that the library gave it
class App;
}

namespace talvek::host {

/// A model by number, or by a name that is defined in some operating modes only.
struct ModelChoice {
    enum class Family : std::uint8_t { kAny, kOffsetting, kWeathering };
    std::int32_t number = 0;
    Family family = Family::kAny;
};

/// Values of one kind: one for every epoch, or one for each.
using EpochValues = std::vector<float>;

/// What a plan is made of.
struct PlanOptions {
    std::optional<std::int32_t> mode;
    std::optional<ModelChoice> model;
    std::optional<std::int32_t> epochs;
    std::vector<std::uint32_t> days;
    /// SO2, NO2, Rv, RpH, in the order of the interface.
    std::array<EpochValues, TALVEK_EPOCH_PARAMS> environment;
    /// Constant offset, mean, spread, smoothing: the same slots in the offsetting mode.
    std::array<EpochValues, TALVEK_EPOCH_PARAMS> offsets;
    std::array<std::optional<float>, TALVEK_MATERIAL_PARAMS> material;
    /// The parameter file to start from.
    std::string config;
    /// A table of epochs, and what its empty cells stand for.
    std::string epochTable;
    EmptyCells emptyCells = EmptyCells::kRefused;
};

/// Which of a run's numbered frames are kept.
struct FrameChoice {
    /// Every n-th, the last one besides; 0 for the last one alone.
    std::int32_t every = 1;
    bool keepsLast = true;

    bool keeps(std::int32_t frame, std::int32_t numEpochs) const {
        return frame == numEpochs ? keepsLast : every > 0 && frame % every == 0;
    }
    bool keepsAll() const { return every == 1; }
};

struct RunOptions : PlanOptions {
    std::string mesh;
    ImportOptions import;
    /// Where everything goes; empty for beside the mesh.
    std::string outFolder;
    FrameChoice frames;
    bool isDryRun = false;
    bool isQuiet = false;
    bool asJson = false;
    bool force = false;
    bool saveConfig = false;
    bool keepInputFrame = false;
    /// Whether a mesh of which the reader leaves something out is weathered all the same.
    bool acceptsLoss = false;
    /// The most bytes that a run may write.
    std::uint64_t mostOutput = 100'000'000'000;
    std::string mineralMap;
    bool replaceMap = false;
    std::string log;
    bool isVerbose = false;
    /// Write the page of the run, too.
    bool withPage = false;
};

inline constexpr const char* kEnvironmentOptions[TALVEK_EPOCH_PARAMS] = {"--so2", "--no2", "--rv", "--rph"};
inline constexpr const char* kOffsetOptions[TALVEK_EPOCH_PARAMS] = {"--offset", "--mean", "--sigma", "--smooth"};
inline constexpr const char* kMaterialNames[TALVEK_MATERIAL_PARAMS] = {"De",  "Den", "Hd", "Ks",
                                                                       "Ksn", "Kr",  "Mb", "Db"};

/// "--de" for the first parameter of the material.
std::string materialOption(std::size_t index);

/// Adds the options that make a plan to a command.
void addPlanArguments(CLI::App& command, PlanOptions& options);

/// Adds the arguments of a run to a command.
void addRunArguments(CLI::App& command, RunOptions& options);

}  // namespace talvek::host
