#include "api/parameter_file.h"

#include <algorithm>
#include <span>
#include <string>
#include <string_view>

#include "api/engine_name.h"
#include "api/parameter_statement.h"
#include "api/session/session.h"
#include "base/number_text.h"
#include "base/output_file.h"
#include "base/text_scanner.h"
#include "talvek.h"

namespace talvek {

namespace {

// Lines are what the scanner calls tokens; empty ones say nothing anyway.
constexpr CharacterSet kLineSeparators{"\n"};

std::int32_t orFallback(std::int32_t value, std::int32_t largest, std::int32_t fallback) {
    return value < 0 || value > largest ? fallback : value;
}

/// A list that is too short repeats its last number.
void parseNumberList(std::string_view list, std::span<double> slots) {
    for (double& slot : slots) {
        const std::size_t comma = list.find(',');
        slot = toDouble(list.substr(0, comma));
        if (comma != std::string_view::npos) {
            list.remove_prefix(comma + 1);
        }
    }
}

void applyHeader(const Statement& statement) {
    TalvekSession& current = session();
    if (statement.key.starts_with("model")) {
        current.model = orFallback(toInt(statement.value), TALVEK_MODEL_ACID_RAIN, TALVEK_MODEL_ACID_RAIN);
    } else if (statement.key.starts_with("mode")) {
        current.mode = orFallback(toInt(statement.value), TALVEK_MODE_GRAIN_WEAVER, TALVEK_MODE_MESH_DATA);
    }
    if (statement.key.starts_with("epcs")) {
        current.numEpochs = orFallback(toInt(statement.value), TALVEK_MAX_EPOCHS, 1);
    }
}

/// The epochs that have a line of their own, and what the others get.
class EpochLines {
  public:
    explicit EpochLines(const EpochTable& table) : table_(table), isGiven_(makeZeroedArray<bool>(table.size)) {}

    void apply(const Statement& statement) {
        constexpr std::string_view kPrefix = "epc_";
        if (statement.key.starts_with("epc_0")) {
            hasTemplate_ = true;
            parseNumberList(statement.value, template_.values);
        }
        if (statement.key.starts_with(kPrefix)) {
            const std::int32_t n = toInt(statement.key.substr(kPrefix.size()));
            if (n >= 1 && n <= std::min(session().numEpochs, table_.size)) {
                isGiven_[static_cast<std::size_t>(n) - 1] = true;
                parseNumberList(statement.value, table_.epoch(n).values);
            }
        }
    }

    void applyTemplate() const {
        for (std::int32_t n = 1; hasTemplate_ && n <= table_.size; ++n) {
            if (!isGiven_[static_cast<std::size_t>(n) - 1]) {
                table_.epoch(n) = template_;
            }
        }
    }

  private:
    const EpochTable& table_;
    HeapArray<bool> isGiven_;
    EpochRecord template_ = {};
    bool hasTemplate_ = false;
};

template <typename Apply>
bool forEachStatement(Apply apply) {
    InputFile file(session().cfgFileName);
    if (!file.isOpen()) {
        return false;
    }
    TextScanner scanner(file, kLineSeparators);
    std::string_view line;
    while (scanner.nextToken(line)) {
        apply(parseStatement(line));
    }
    return !file.hasFailed();
}

void writeLine(OutputFile& file, std::string_view text) {
    file.write(text);
    file.write(system::kLineEnd);
}

std::string numberList(std::span<const double> values) {
    std::string list;
    for (const double value : values) {
        char number[kNumberTextSize];
        list.append(list.empty() ? "" : ", ").append(number, formatGeneral(number, value));
    }
    return list;
}

void writeStatement(OutputFile& file, const std::string& key, const std::string& value) {
    writeLine(file, key + " = " + value + ";");
}

void writeEpochs(OutputFile& file) {
    const TalvekSession& current = session();
    for (std::int32_t n = 1; n <= current.numEpochs; ++n) {
        writeStatement(file, "epc_" + std::to_string(n), numberList(current.epochTable.epoch(n).values));
    }
}

}  // namespace

bool readParameterHeader() {
    if (forEachStatement(applyHeader)) {
        return true;
    }
    system::writeToStandardOutput("Error opening datafile " + std::string(session().cfgFileName) + ". Please check!\n");
    return false;
}

bool readParameterFile() {
    EpochLines epochs(session().epochTable);
    const bool isRead = forEachStatement([&epochs](const Statement& statement) {
        applyHeader(statement);
        if (statement.key.starts_with("mtl")) {
            parseNumberList(statement.value, session().materialParams->values);
        }
        epochs.apply(statement);
    });
    epochs.applyTemplate();
    return isRead;
}

bool writeParameterFile() {
    const TalvekSession& current = session();
    OutputFile file(current.cfgFileName, Durability::kOnDisk);
    writeLine(file, "//Material and environmental parameters for the " + engineNameAndVersion(" "));
    writeLine(file, std::string("//automatically created configuration file: ") + current.cfgFileName);
    writeLine(file, "");
    writeStatement(file, "mode", std::to_string(current.mode));
    writeLine(file, "");
    writeStatement(file, "model", std::to_string(current.model));
    writeLine(file, "");
    writeStatement(file, "mtl", numberList(current.materialParams->values));
    writeLine(file, "");
    writeStatement(file, "epcs", std::to_string(current.numEpochs));
    writeLine(file, "");
    writeEpochs(file);
    writeLine(file, "");
    return file.finish();
}

}  // namespace talvek
