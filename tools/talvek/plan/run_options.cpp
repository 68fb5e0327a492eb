#include "talvek/plan/run_options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cctype>
#include <cmath>

#include "api/session/operating_modes.h"
#include "talvek/plan/import_arguments.h"
#include "talvek/plan/units.h"

namespace talvek::host {

namespace {

using Family = ModelChoice::Family;

/// A number, defined or not: whether a mode or model is defined is for the run to say.
std::optional<std::int32_t> smallNumber(const std::string& text) {
    const std::optional<std::int64_t> number = wholeNumber(text);
    return number && *number == static_cast<std::int32_t>(*number) ? std::optional(static_cast<std::int32_t>(*number))
                                                                   : std::nullopt;
}

std::string listOfModes() {
    std::string names;
    for (const OperatingMode& mode : kOperatingModes) {
        names.append(names.empty() ? "" : ", ").append(mode.name);
    }
    return names;
}

/// The models of all modes, each once.
std::string listOfModels() {
    std::string names;
    for (const WeatheringModels* models : {&kOffsettingModels, &kRateModels}) {
        for (const WeatheringModel& model : *models) {
            names.append(names.empty() || model.name.empty() ? "" : ", ").append(model.name);
        }
    }
    return names;
}

std::int32_t parseMode(const std::string& text) {
    const auto* const named = std::ranges::find(kOperatingModes, text, &OperatingMode::name);
    if (named != kOperatingModes.end()) {
        return static_cast<std::int32_t>(named - kOperatingModes.begin());
    }
    if (const auto number = smallNumber(text)) {
        return *number;
    }
    throw CLI::ValidationError("--mode", "no mode " + text + "; a number 0 to 3 or one of " + listOfModes());
}

std::optional<std::int32_t> modelCalled(const std::string& name, const WeatheringModels& models) {
    const auto* const named = std::ranges::find(models, name, &WeatheringModel::name);
    // Models that a mode does not have are called nothing.
    return named != models.end() && !name.empty() ? std::optional(static_cast<std::int32_t>(named - models.begin()))
                                                  : std::nullopt;
}

ModelChoice parseModel(const std::string& text) {
    if (const auto offsetting = modelCalled(text, kOffsettingModels)) {
        return {*offsetting, Family::kOffsetting};
    }
    if (const auto rate = modelCalled(text, kRateModels)) {
        return {*rate, Family::kWeathering};
    }
    if (const auto number = smallNumber(text)) {
        return {*number, Family::kAny};
    }
    throw CLI::ValidationError("--model", "no model " + text + "; a number 0 to 3 or one of " + listOfModels());
}

FrameChoice parseFrames(const std::string& text) {
    constexpr std::string_view kEvery = "every:";
    if (text == "all") {
        return {};
    }
    if (text == "last" || text == "none") {
        return {.every = 0, .keepsLast = text == "last"};
    }
    if (const auto number = text.starts_with(kEvery) ? smallNumber(text.substr(kEvery.size())) : std::nullopt) {
        if (*number >= 1) {
            return {.every = *number, .keepsLast = true};
        }
    }
    throw CLI::ValidationError("--frames", text + " is none of all, last, none, every:N");
}

float parseFinite(const std::string& option, const std::string& text) {
    float value = 0;
    if (!CLI::detail::lexical_cast(text, value) || !std::isfinite(value)) {
        throw CLI::ValidationError(option, text + " is not a finite number");
    }
    return value;
}

/// The values between the commas of a list.
std::vector<std::string> splitList(const std::string& option, const std::string& text) {
    std::vector<std::string> values = CLI::detail::split(text, ',');
    for (std::string& value : values) {
        CLI::detail::trim(value);
    }
    // A comma at the end leaves no value behind it.
    if (text.ends_with(',') || std::ranges::find(values, "") != values.end()) {
        throw CLI::ValidationError(option, "\"" + text + "\" has a comma too many");
    }
    return values;
}

std::uint32_t parseDays(const std::string& option, const std::string& text) {
    const bool areYears = text.ends_with('y');
    const std::optional<Measured> measured = splitMeasured(text);
    const bool hasUnit = measured && (measured->unit == "y" || measured->unit == "d");
    const std::optional<std::int64_t> days = hasUnit && areYears
                                                 ? wholeNumber(std::to_string(measured->number * kYearDays))
                                                 : wholeNumber(hasUnit ? measured->numberText : text);
    if (!days || *days < 1 || *days > TALVEK_MAX_EPOCH_DAYS) {
        throw CLI::ValidationError(option,
                                   text + " is not a number of days, 1 to " + std::to_string(TALVEK_MAX_EPOCH_DAYS));
    }
    return static_cast<std::uint32_t>(*days);
}

std::int32_t parseEpochs(const std::string& text) {
    const std::optional<std::int32_t> number = smallNumber(text);
    if (!number || *number < 1 || *number > TALVEK_MAX_EPOCHS) {
        throw CLI::ValidationError("--epochs",
                                   text + " is not a number of epochs, 1 to " + std::to_string(TALVEK_MAX_EPOCHS));
    }
    return *number;
}

EmptyCells parseFill(const std::string& text) {
    if (text == "default") {
        return EmptyCells::kDefault;
    }
    if (text == "previous") {
        return EmptyCells::kPrevious;
    }
    throw CLI::ValidationError("--fill", text + " is none of default, previous");
}

/// The option of one of the four values; Slot counts them as the interface does.
template <std::size_t Slot>
float parseValue(const std::string& option, const std::string& text) {
    const std::optional<Measured> measured = splitMeasured(text);
    if (!measured || measured->unit.empty()) {
        const float value = parseFinite(option, text);
        const std::string other = otherUnitText(Slot, static_cast<double>(value), text);
        if (!other.empty()) {
            throw CLI::ValidationError(option, other);
        }
        return value;
    }
    const std::optional<double> value = inOwnUnit(Slot, *measured);
    if (!value) {
        throw CLI::ValidationError(option, text + " is in no unit of this value, which are " + unitNames(Slot));
    }
    return static_cast<float>(*value);
}

/// Adds an option that takes one value for all epochs, or one for each with commas between.
template <typename Value>
void addList(CLI::App& command, const std::string& name, std::vector<Value>& values,
             Value (*parse)(const std::string& option, const std::string& text), const std::string& description,
             const char* typeName) {
    command
        .add_option_function<std::string>(
            name,
            [name, parse, &values](const std::string& text) {
                for (const std::string& value : splitList(name, text)) {
                    values.push_back(parse(name, value));
                }
            },
            description)
        ->type_name(typeName);
}

void addChoice(CLI::App& command, PlanOptions& options) {
    command
        .add_option_function<std::string>(
            "--mode", [&options](const std::string& text) { options.mode = parseMode(text); },
            "Operating mode: 0 offsetting, 1 mesh (default), 2 qemscan, 3 grain-weaver")
        ->type_name("MODE");
    command
        .add_option_function<std::string>(
            "--model", [&options](const std::string& text) { options.model = parseModel(text); },
            "Weathering model: 1 so2, 2 so2-no2, 3 acid-rain (default);\n"
            "in mode 0: 0 constant (default), 1 random, 2 smoothing")
        ->type_name("MODEL");
    command
        .add_option_function<std::string>(
            "--epochs", [&options](const std::string& text) { options.epochs = parseEpochs(text); },
            "Number of epochs, 1 to 4000 (default 1)")
        ->type_name("N");
    addList(command, "--days", options.days, parseDays,
            "Days of every epoch, or of each, 1 to 1000000, or years of 365 days: 10y (default 365)", "D[,D...]");
}

void addEnvironment(CLI::App& command, PlanOptions& options) {
    constexpr const char* kDescriptions[] = {
        "SO2 in mol/cm3, or with a unit: 26ug/m3, 10ppb, 5ugS/m3 (default 4.09e-13)",
        "NO2 in mol/cm3, or with a unit: 40ug/m3, 25ppb, 5ugN/m3 (default 1.023e-12)",
        "Rain in m a year of 365 days, or with a unit: 780mm (default 1.13)",
        "Acidity of the rain, a pH (default 4.5)"};
    constexpr const char* kOffsetDescriptions[] = {
        "Mode 0: constant offset, mm per day", "Mode 0: mean offset, mm per day",
        "Mode 0: spread of the offset, mm per day", "Mode 0: smoothing amount, mm2 per day"};
    constexpr float (*kParsers[])(const std::string&, const std::string&) = {parseValue<0>, parseValue<1>,
                                                                             parseValue<2>, parseValue<3>};
    constexpr const char* kList = "X[,X...]";
    for (std::size_t i = 0; i < TALVEK_EPOCH_PARAMS; ++i) {
        addList(command, kEnvironmentOptions[i], options.environment[i], kParsers[i], kDescriptions[i], kList);
    }
    for (std::size_t i = 0; i < TALVEK_EPOCH_PARAMS; ++i) {
        addList(command, kOffsetOptions[i], options.offsets[i], parseFinite, kOffsetDescriptions[i], kList);
    }
}

void addMaterial(CLI::App& command, PlanOptions& options) {
    constexpr const char* kDescriptions[] = {
        "diffusion coefficient of the SO2 crust, cm2/h",  "diffusion coefficient of the SO2+NO2 crust, cm2/h",
        "first resistance of the SO2 crust, cm/h",        "second resistance of the SO2 crust, cm/h",
        "resistance of the SO2+NO2 crust, cm/h",          "rate constant of dry recession, cm/h",
        "molar mass of what is deposited or lost, g/mol", "its density, g/cm3"};
    for (std::size_t i = 0; i < TALVEK_MATERIAL_PARAMS; ++i) {
        const std::string name = materialOption(i);
        std::optional<float>& value = options.material[i];
        command
            .add_option_function<std::string>(
                name, [name, &value](const std::string& text) { value = parseFinite(name, text); },
                std::string("Material ") + kMaterialNames[i] + ": " + kDescriptions[i])
            ->type_name("X");
    }
}

void addSources(CLI::App& command, PlanOptions& options) {
    command.add_option("--config", options.config, "Parameter file (.cfg) to start from; other options win")
        ->type_name("FILE");
    CLI::Option* const table =
        command.add_option("--epoch-table", options.epochTable, "Table of epochs (CSV), one row an epoch")
            ->type_name("FILE");
    command
        .add_option_function<std::string>(
            "--fill", [&options](const std::string& text) { options.emptyCells = parseFill(text); },
            "What empty cells of the table stand for: default or previous (default: an error)")
        ->type_name("WITH")
        ->needs(table);
}

void addFiles(CLI::App& command, RunOptions& options) {
    command.add_option("MESH", options.mesh, meshArgumentText("Mesh of the stone"))->required()->type_name("");
    command.add_option("--out", options.outFolder, "Folder for every file of the run, made when absent")
        ->type_name("DIR");
    command
        .add_option_function<std::string>(
            "--frames", [&options](const std::string& text) { options.frames = parseFrames(text); },
            "Frames to keep: all (default), last, none, or every:N; the first and the last surface stay")
        ->type_name("WHICH");
    command.add_flag("--save-config", options.saveConfig,
                     "Write the parameters beside the mesh, as MESH's name with .cfg");
    command.add_flag("--force", options.force, "Replace files that the program has not written");
    command.add_flag("--keep-input-frames", options.keepInputFrame, "Also write the input surface as frame 0");
    command
        .add_option("--max-output", options.mostOutput,
                    "Refuse a run that would write more, such as 500MB or 2TB (default 100GB)")
        ->transform(CLI::AsSizeValue(true))
        ->type_name("SIZE");
    command.add_flag("--accept-loss", options.acceptsLoss,
                     "Weather what is left of a mesh whose file is not read whole or not as meant");
    CLI::Option* map = command
                           .add_option("--mineral-map", options.mineralMap,
                                       "Modes 2 and 3: bitmap or PNG to put beside the mesh as its mineral map")
                           ->type_name("FILE");
    command.add_flag("--replace-map", options.replaceMap, "Let --mineral-map replace another map beside the mesh")
        ->needs(map);
    command.add_option("--log", options.log, "Write the library's lines to a file")->type_name("FILE");
    CLI::Option* const verbose =
        command.add_flag("--verbose", options.isVerbose, "Write the library's lines to standard output");
    command.add_flag("--quiet", options.isQuiet, "Print warnings and errors alone")->excludes(verbose);
    command.add_flag("--json", options.asJson, "Print a JSON object a line: plan, epochs, results")->excludes(verbose);
    command.add_flag("--view", options.withPage, "Write the run as a page for the browser, too, as talvek view does");
    command.add_flag("--dry-run", options.isDryRun, "Check and tell what would be done, and do nothing");
}

}  // namespace

std::string materialOption(std::size_t index) {
    std::string name = "--" + std::string(kMaterialNames[index]);
    name[2] = static_cast<char>(std::tolower(name[2]));
    return name;
}

void addPlanArguments(CLI::App& command, PlanOptions& options) {
    addSources(command, options);
    addChoice(command, options);
    addEnvironment(command, options);
    addMaterial(command, options);
}

void addRunArguments(CLI::App& command, RunOptions& options) {
    addFiles(command, options);
    addImportArguments(command, options.import);
    addPlanArguments(command, options);
}

}  // namespace talvek::host
