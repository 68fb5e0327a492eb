// A parameter file read strictly. The library passes over what it does not understand and puts values of its own in the
// place of what is missing; a user who mistyped something has to be told instead.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace talvek::host {

/// What stands after "key =", and where.
struct ParameterLine {
    std::size_t line = 0;
    std::vector<double> values;
};

struct ParameterLines {
    std::optional<ParameterLine> mode;
    std::optional<ParameterLine> model;
    std::optional<ParameterLine> material;
    std::optional<ParameterLine> numEpochs;
    /// By number; 0 stands for all epochs that have no line of their own.
    std::map<std::int32_t, ParameterLine> epochs;

    bool isEmpty() const { return !mode && !model && !material && !numEpochs && epochs.empty(); }
};

/// What editors put at the beginning of a text to say that it is UTF-8.
inline constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

/// Reads the text of a parameter file, with or without a byte order mark. Throws Failure, naming the file and the line,
/// for what is no statement of a parameter file.
ParameterLines readParameterLines(const std::string& name, std::string_view text);

/// "two.cfg: line 3: ": what stands before the trouble with a line.
std::string placeIn(const std::string& name, std::size_t line);

}  // namespace talvek::host
