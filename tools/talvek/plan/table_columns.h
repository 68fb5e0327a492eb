// What the columns of a table of epochs stand for.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace talvek::host {

struct TableColumn {
    enum class Kind : std::uint8_t { kDays, kStart, kEnd, kNote, kValue, kRainOfEpoch };
    std::string name;
    Kind kind = Kind::kNote;
    /// Of the value, by its number in the interface, and how many of the model's own units one of the column's has.
    std::size_t slot = 0;
    double factor = 1;
};

/// Throws Failure for a column that is unknown, there twice, or at odds with another one.
std::vector<TableColumn> columnsOf(const std::vector<std::string>& names, const std::string& place);

/// Where the column stands; nothing where there is none.
std::optional<std::size_t> columnOfKind(const std::vector<TableColumn>& columns, TableColumn::Kind kind);

}  // namespace talvek::host
