#include "talvek/engine/session_start.h"

#include <algorithm>
#include <cstddef>
#include <vector>

#include "talvek/plan/mode_names.h"
#include "talvek/support/exit_status.h"

namespace talvek::host {

namespace {

constexpr std::int32_t kDefaultDays = 365;

void writeEpoch(std::uint32_t number, const Epoch& epoch) {
    // A parameter file can give an epoch days that the interface does not take; the table's own then stay.
    static_cast<void>(talvekSetEpochTimeSpan(number, epoch.days));
    require(talvekSetEpochParams(number, epoch.environment.data()), "epoch " + std::to_string(number) + " is missing");
}

/// Makes the epoch table longer than the parameter file has it: the epochs that are new are like its last.
void addEpochs(std::int32_t wanted) {
    const std::int32_t given = talvekGetNumEpochs();
    std::vector<Epoch> epochs;
    for (std::int32_t n = 1; n <= given; ++n) {
        epochs.push_back(readEpoch(static_cast<std::uint32_t>(n)));
    }
    std::array<float, TALVEK_MATERIAL_PARAMS> material{};
    require(talvekGetMaterialParams(material.data()), "the material is missing");
    talvekFree();
    require(talvekSetTimeSpan(wanted, kDefaultDays), "the number of epochs is out of range");
    require(talvekInit(), "there is no memory for the parameters");
    require(talvekSetMaterialParams(material.data()), "the material is missing");
    for (std::int32_t n = 1; n <= wanted && !epochs.empty(); ++n) {
        const std::size_t source = std::min(static_cast<std::size_t>(n), epochs.size());
        writeEpoch(static_cast<std::uint32_t>(n), epochs[source - 1]);
    }
}

/// The setters put a value of their own in the place of one that is out of range, so the range is checked first.
void setModeAndModel(std::int32_t mode, std::int32_t model) {
    if (mode < 0 || mode > talvekGetMaxMode()) {
        throw Failure(kExitUndefinedMode, "mode " + std::to_string(mode) + " is not defined; modes are 0 to 3");
    }
    if (model < 0 || model > talvekGetMaxModel()) {
        throw Failure(kExitUndefinedModel, "model " + std::to_string(model) + " is not defined; models are 0 to 3");
    }
    require(talvekSetMode(mode), "the mode is out of range");
    require(talvekSetModel(model), "the model is out of range");
}

std::int32_t defaultModel(std::int32_t mode) {
    if (mode == TALVEK_MODE_OFFSETTING) {
        return TALVEK_MODEL_CONSTANT_OFFSET;
    }
    return TALVEK_MODEL_ACID_RAIN;
}

void startFromDefaults(const RunOptions& options) {
    const std::int32_t mode = options.mode.value_or(TALVEK_MODE_MESH_DATA);
    setModeAndModel(mode, options.model ? options.model->number : defaultModel(mode));
    require(talvekSetTimeSpan(options.epochs.value_or(1), kDefaultDays), "the number of epochs is out of range");
    require(talvekInit(), "there is no memory for the parameters");
}

/// A parameter file can hold any days, of which neither the interface nor a summary in whole days can tell.
void requireUsableDays(const RunOptions& options) {
    const std::int32_t used = std::min(options.epochs.value_or(talvekGetNumEpochs()), talvekGetNumEpochs());
    for (std::int32_t n = 1; n <= used && options.days.empty(); ++n) {
        const std::int32_t days = talvekGetEpochTimeSpan(static_cast<std::uint32_t>(n));
        if (days < 1 || days > TALVEK_MAX_EPOCH_DAYS) {
            throw Failure(kExitParameters, options.config + ": the days of epoch " + std::to_string(n) +
                                               " are not in the range 1 to " + std::to_string(TALVEK_MAX_EPOCH_DAYS) +
                                               "; correct the file, or give --days");
        }
    }
}

/// The four values of an epoch are offsets in one mode and gases and rain in the others, and models are numbered anew.
void requireSameKindOfMode(const RunOptions& options, std::int32_t own) {
    const std::int32_t mode = talvekGetMode();
    const bool isOffsetting = mode == TALVEK_MODE_OFFSETTING;
    const auto& given = isOffsetting ? options.offsets : options.environment;
    bool isReplaced = options.model.has_value();
    for (std::size_t slot = 0; slot < given.size() && isReplaced; ++slot) {
        isReplaced = !given[slot].empty() || !usesEpochValue(mode, options.model->number, slot);
    }
    if (isOffsetting == (own == TALVEK_MODE_OFFSETTING) || isReplaced) {
        return;
    }
    throw Failure(kExitUsage,
                  options.config + ": it is for " + modeName(own) + ", and " + modeName(mode) +
                      (isOffsetting ? " would take its gases and rain for offsets; leave --mode out, or give --model "
                                      "and the model's offsets as options"
                                    : " would take its offsets for gases and rain; leave --mode out, or give --model, "
                                      "--so2, --no2, --rv and --rph as options"));
}

void startFromConfig(const RunOptions& options) {
    // The library finds a parameter file by the mesh's name, so for a moment the parameter file stands for the mesh.
    require(talvekSetFileName(options.config.c_str()), options.config + ": the name is too long");
    require(talvekReadParams(), options.config + ": cannot read the parameter file");
    requireUsableDays(options);
    const std::int32_t ownMode = talvekGetMode();
    setModeAndModel(options.mode.value_or(talvekGetMode()), options.model ? options.model->number : talvekGetModel());
    requireSameKindOfMode(options, ownMode);
    if (options.epochs && *options.epochs > talvekGetNumEpochs()) {
        addEpochs(*options.epochs);
    } else if (options.epochs) {
        require(talvekSetNumEpochs(*options.epochs), "the number of epochs is out of range");
    }
}

}  // namespace

void require(std::int32_t resultCode, const std::string& message) {
    if (resultCode != TALVEK_OK) {
        throw Failure(static_cast<ExitStatus>(exitStatusOf(resultCode)), message);
    }
}

Epoch readEpoch(std::uint32_t number) {
    Epoch epoch{static_cast<std::uint32_t>(talvekGetEpochTimeSpan(number)), {}};
    require(talvekGetEpochParams(number, epoch.environment.data()), "epoch " + std::to_string(number) + " is missing");
    return epoch;
}

void startSession(const RunOptions& options) {
    if (options.config.empty()) {
        startFromDefaults(options);
    } else {
        startFromConfig(options);
    }
}

}  // namespace talvek::host
