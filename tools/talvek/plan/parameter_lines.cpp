#include "talvek/plan/parameter_lines.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <string_view>

#include "api/parameter_statement.h"
#include "base/number_text.h"
#include "talvek.h"
#include "talvek/support/exit_status.h"
#include "talvek/support/messages.h"

namespace talvek::host {

namespace {

constexpr std::string_view kBlanks = " \t";
constexpr std::string_view kEpochPrefix = "epc_";
constexpr std::string_view kKeys = "mode, model, mtl, epcs and epc_0, epc_1, ...";

std::string_view trimmed(std::string_view text) {
    const std::size_t begin = std::min(text.find_first_not_of(kBlanks), text.size());
    return text.substr(begin, text.find_last_not_of(kBlanks) + 1 - begin);
}

std::string quoted(std::string_view text) {
    constexpr std::size_t kLongest = 60;
    return "\"" + std::string(text.substr(0, kLongest)) + (text.size() > kLongest ? "..." : "") + "\"";
}

bool isComment(std::string_view line) {
    return line.empty() || line.starts_with("//") || line.starts_with('#');
}

/// A "0" before another digit is what a decimal comma leaves behind it: "4,09e-13" is taken for 4 and 09e-13.
bool looksLikeDecimals(std::string_view number) {
    return number.size() > 1 && number[0] == '0' && number[1] >= '0' && number[1] <= '9';
}

class Reader {
  public:
    explicit Reader(const std::string& name) : name_(name) {}

    void take(std::string_view line) {
        ++line_;
        if (isComment(trimmed(line))) {
            return;
        }
        if (kBlanks.find(line[0]) != std::string_view::npos) {
            refuse("the line begins with a blank, and the library passes over such lines; take the blank out");
        }
        if (line.find('=') == std::string_view::npos) {
            refuse(quoted(line) + " is no statement such as \"mode = 1;\"; comments begin with //");
        }
        const Statement statement = parseStatement(line);
        refuseSecondStatement(line);
        store(trimmed(statement.key), statement.value.substr(0, statement.value.find("//")));
    }

    const ParameterLines& lines() const { return lines_; }

  private:
    [[noreturn]] void refuse(const std::string& what) const {
        throw Failure(kExitParameters, placeIn(name_, line_) + what);
    }

    void refuseSecondStatement(std::string_view line) const {
        const std::string_view rest = line.substr(std::min(line.find(';'), line.size()));
        const std::string_view more = rest.substr(0, rest.find("//"));
        if (more.find('=') != std::string_view::npos) {
            refuse("the library reads one statement in a line, and passes over " + quoted(trimmed(more.substr(1))));
        }
    }

    void store(std::string_view key, std::string_view value) {
        if (key == "mode") {
            put(lines_.mode, key, value, 1, "a number");
        } else if (key == "model") {
            put(lines_.model, key, value, 1, "a number");
        } else if (key == "epcs") {
            put(lines_.numEpochs, key, value, 1, "the number of epochs");
        } else if (key == "mtl") {
            put(lines_.material, key, value, TALVEK_MATERIAL_PARAMS, "De, Den, Hd, Ks, Ksn, Kr, Mb and Db");
        } else if (key.starts_with(kEpochPrefix)) {
            std::optional<ParameterLine> epoch;
            const std::int32_t number = epochNumber(key);
            refuseSecond(lines_.epochs.contains(number) ? &lines_.epochs[number] : nullptr, key);
            put(epoch, key, value, TALVEK_EPOCH_PARAMS + 1, "the days and the four values of an epoch");
            lines_.epochs[number] = *epoch;
        } else {
            refuse("there is no parameter " + quoted(key) + "; there are " + std::string(kKeys));
        }
    }

    std::int32_t epochNumber(std::string_view key) const {
        const std::string_view digits = key.substr(kEpochPrefix.size());
        std::int32_t number = -1;
        const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
        const bool isWhole = error == std::errc() && end == digits.data() + digits.size();
        if (!isWhole || number < 0 || number > TALVEK_MAX_EPOCHS || std::to_string(number) != digits) {
            refuse(quoted(key) + " names no epoch; they are epc_1 to epc_" + std::to_string(TALVEK_MAX_EPOCHS) +
                   ", and epc_0 for all that have no line of their own");
        }
        return number;
    }

    void refuseSecond(const ParameterLine* former, std::string_view key) const {
        if (former != nullptr) {
            refuse(std::string(key) + " stands here a second time; the first is in line " +
                   std::to_string(former->line));
        }
    }

    void put(std::optional<ParameterLine>& slot, std::string_view key, std::string_view list, std::size_t wanted,
             const std::string& meaning) {
        refuseSecond(slot ? &*slot : nullptr, key);
        const std::vector<std::string_view> words = wordsOf(list);
        slot.emplace(ParameterLine{line_, {}});
        for (const std::string_view word : words) {
            slot->values.push_back(numberIn(word, key));
        }
        if (words.size() != wanted) {
            refuse(std::string(key) + " has " + countOf(words.size(), "value") + " and takes " +
                   std::to_string(wanted) + ", " + meaning + decimalAdvice(words.size() > wanted));
        }
    }

    static std::vector<std::string_view> wordsOf(std::string_view list) {
        std::vector<std::string_view> words;
        for (std::size_t begin = 0; begin <= list.size() && !trimmed(list).empty();) {
            const std::size_t end = std::min(list.find(',', begin), list.size());
            words.push_back(trimmed(list.substr(begin, end - begin)));
            begin = end + 1;
        }
        return words;
    }

    static std::string decimalAdvice(bool isLikely) {
        return isLikely ? "; commas stand between values, and decimals are written with a point: 0.14" : "";
    }

    double numberIn(std::string_view word, std::string_view key) const {
        double value = 0;
        const bool isWhole = !word.empty() && parseDouble(word, value) == word.size();
        if (!isWhole || !std::isfinite(value)) {
            refuse(std::string(key) + ": " + quoted(word) + " is not a finite number");
        }
        if (looksLikeDecimals(word)) {
            refuse(std::string(key) + ": " + quoted(word) + " looks like what follows a decimal comma" +
                   decimalAdvice(true));
        }
        return value;
    }

    const std::string& name_;
    std::size_t line_ = 0;
    ParameterLines lines_;
};

}  // namespace

std::string placeIn(const std::string& name, std::size_t line) {
    return name + ": line " + std::to_string(line) + ": ";
}

ParameterLines readParameterLines(const std::string& name, std::string_view text) {
    if (text.starts_with(kByteOrderMark)) {
        text.remove_prefix(kByteOrderMark.size());
    }
    Reader reader(name);
    while (!text.empty()) {
        std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(line.size() + 1, text.size()));
        line.remove_suffix(line.ends_with('\r') ? 1 : 0);
        reader.take(line);
    }
    return reader.lines();
}

}  // namespace talvek::host
