#include "talvek/plan/table_columns.h"

#include <algorithm>
#include <array>

#include "talvek.h"
#include "talvek/plan/units.h"
#include "talvek/support/exit_status.h"
#include "talvek/support/nearest_name.h"

namespace talvek::host {

namespace {

using Kind = TableColumn::Kind;

constexpr std::size_t kRainSlot = 2;

std::vector<TableColumn> knownColumns() {
    std::vector<TableColumn> columns = {
        {"days", Kind::kDays}, {"start", Kind::kStart}, {"end", Kind::kEnd}, {"note", Kind::kNote}};
    for (std::size_t slot = 0; slot < TALVEK_EPOCH_PARAMS; ++slot) {
        const ValueUnits& value = unitsOfValue(slot);
        for (std::size_t i = 0; i < value.count; ++i) {
            if (!value.units[i].column.empty()) {
                columns.push_back({std::string(value.units[i].column), Kind::kValue, slot, value.units[i].factor});
            }
        }
    }
    constexpr double kMetres = 1e-3;
    columns.push_back({"rain_mm", Kind::kRainOfEpoch, kRainSlot, kMetres});
    return columns;
}

std::string lowerCase(std::string text) {
    std::ranges::transform(text, text.begin(),
                           [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    return text;
}

TableColumn columnCalled(const std::string& name, const std::string& place) {
    const std::vector<TableColumn> known = knownColumns();
    std::string names;
    std::vector<std::string> all;
    for (const TableColumn& column : known) {
        if (lowerCase(column.name) == lowerCase(name)) {
            return column;
        }
        names += (names.empty() ? "" : ", ") + column.name;
        all.push_back(column.name);
    }
    throw Failure(kExitParameters, place + ": \"" + name + "\" is no column of a table of epochs" +
                                       didYouMean(nearestName(name, all)) + "; columns are " + names);
}

bool haveSameMeaning(const TableColumn& a, const TableColumn& b) {
    const auto isValue = [](const TableColumn& column) {
        return column.kind == Kind::kValue || column.kind == Kind::kRainOfEpoch;
    };
    return isValue(a) && isValue(b) ? a.slot == b.slot : a.kind == b.kind;
}

void requireTime(const std::vector<TableColumn>& columns, const std::string& place) {
    const bool hasDays = columnOfKind(columns, Kind::kDays).has_value();
    const bool hasStart = columnOfKind(columns, Kind::kStart).has_value();
    const bool hasEnd = columnOfKind(columns, Kind::kEnd).has_value();
    if (hasDays && (hasStart || hasEnd)) {
        throw Failure(kExitParameters, place + ": days, and start and end, both give the time; leave one out");
    }
    if (!hasDays && !(hasStart && hasEnd)) {
        throw Failure(kExitParameters, place + ": there is no time; add a column days, or the columns start and end");
    }
}

}  // namespace

std::vector<TableColumn> columnsOf(const std::vector<std::string>& names, const std::string& place) {
    std::vector<TableColumn> columns;
    for (const std::string& name : names) {
        const TableColumn column = columnCalled(name, place);
        for (const TableColumn& earlier : columns) {
            if (haveSameMeaning(earlier, column)) {
                throw Failure(
                    kExitParameters,
                    place + ": " +
                        (earlier.name == column.name ? "the column " + column.name + " is there twice"
                                                     : earlier.name + " and " + column.name + " give the same value") +
                        "; leave one out");
            }
        }
        columns.push_back(column);
    }
    requireTime(columns, place);
    return columns;
}

std::optional<std::size_t> columnOfKind(const std::vector<TableColumn>& columns, Kind kind) {
    const auto found = std::ranges::find(columns, kind, &TableColumn::kind);
    return found != columns.end() ? std::optional(static_cast<std::size_t>(found - columns.begin())) : std::nullopt;
}

}  // namespace talvek::host
