#include "talvek/plan/epoch_table.h"

#include <algorithm>
#include <chrono>
#include <optional>

#include "talvek/plan/calendar_day.h"
#include "talvek/plan/table_columns.h"
#include "talvek/plan/table_text.h"
#include "talvek/plan/units.h"
#include "talvek/support/exit_status.h"
#include "talvek/support/messages.h"
#include "talvek/support/whole_file.h"

namespace talvek::host {

namespace {

using Kind = TableColumn::Kind;
using Day = std::chrono::sys_days;

constexpr std::size_t kAciditySlot = 3;
constexpr double kMostAcidity = 14;

/// Reads the rows of a table one after the other.
class EpochReader {
  public:
    EpochReader(std::string path, TableText table, EmptyCells empty, const PlannedEpoch& defaults)
        : path_(std::move(path)), table_(std::move(table)), empty_(empty), defaults_(defaults) {
        if (table_.rows.empty()) {
            throw Failure(kExitParameters, path_ + ": the table is empty; its first line names the columns");
        }
        columns_ = columnsOf(table_.rows[0].cells, lineText(table_.rows[0]));
    }

    TableEpochs read() {
        TableEpochs result;
        for (const TableColumn& column : columns_) {
            if (isValue(column)) {
                result.isGiven[column.slot] = true;
            }
        }
        if (table_.rows.size() > TALVEK_MAX_EPOCHS + 1) {
            throw Failure(kExitParameters, lineText(table_.rows[TALVEK_MAX_EPOCHS + 1]) + ": there are " +
                                               std::to_string(table_.rows.size() - 1) +
                                               " epochs, and a run has at most " + std::to_string(TALVEK_MAX_EPOCHS) +
                                               "; join some, or divide the table");
        }
        for (std::size_t i = 1; i < table_.rows.size(); ++i) {
            readRow(table_.rows[i]);
            result.epochs.push_back(epoch_);
        }
        if (result.epochs.empty()) {
            throw Failure(kExitParameters,
                          path_ + ": the table has no epochs; each is a line below the columns' names");
        }
        return result;
    }

  private:
    static bool isValue(const TableColumn& column) {
        return column.kind == Kind::kValue || column.kind == Kind::kRainOfEpoch;
    }

    std::string lineText(const TableRow& row) const { return path_ + ", line " + std::to_string(row.line); }

    [[noreturn]] void refuse(const TableRow& row, const TableColumn& column, const std::string& cell,
                             const std::string& what) const {
        throw Failure(kExitParameters, lineText(row) + ", column " + column.name + ": \"" + cell + "\" " + what);
    }

    void readRow(const TableRow& row) {
        if (row.cells.size() != columns_.size()) {
            throw Failure(kExitParameters, lineText(row) + ": there are " + countOf(row.cells.size(), "cell") +
                                               ", and the first line has " + std::to_string(columns_.size()) +
                                               "; look for a separator too many or too few");
        }
        PlannedEpoch next = defaults_;
        previous_ = epoch_;
        epoch_ = next;
        readTime(row);
        for (std::size_t i = 0; i < columns_.size(); ++i) {
            if (columns_[i].kind == Kind::kNote) {
                epoch_.note = row.cells[i];
            } else if (isValue(columns_[i])) {
                readValue(row, columns_[i], row.cells[i]);
            }
        }
        isFirst_ = false;
    }

    void readTime(const TableRow& row) {
        if (const auto days = columnOfKind(columns_, Kind::kDays)) {
            const std::string& cell = row.cells[*days];
            const std::optional<std::int64_t> number = wholeNumber(cell);
            if (!number || *number < 1 || *number > TALVEK_MAX_EPOCH_DAYS) {
                refuse(row, columns_[*days], cell,
                       "is not a number of days, 1 to " + std::to_string(TALVEK_MAX_EPOCH_DAYS));
            }
            epoch_.record.values[0] = static_cast<double>(*number);
            return;
        }
        const Day start = readDay(row, *columnOfKind(columns_, Kind::kStart));
        const Day end = readDay(row, *columnOfKind(columns_, Kind::kEnd));
        const auto days = (end - start).count() + 1;
        if (days < 1 || days > TALVEK_MAX_EPOCH_DAYS) {
            throw Failure(kExitParameters, lineText(row) + ": the epoch ends before it starts, or lasts more than " +
                                               std::to_string(TALVEK_MAX_EPOCH_DAYS) + " days; end is its last day");
        }
        requireNeighbours(row, start);
        lastDay_ = end;
        epoch_.start = dayText(start);
        epoch_.end = dayText(end);
        epoch_.record.values[0] = static_cast<double>(days);
    }

    Day readDay(const TableRow& row, std::size_t index) const {
        const std::optional<Day> day = parseDay(row.cells[index]);
        if (!day) {
            refuse(row, columns_[index], row.cells[index],
                   "is not a day; write it as 2001-01-31, 2001/01/31 or 31.01.2001");
        }
        return *day;
    }

    void requireNeighbours(const TableRow& row, Day start) const {
        if (isFirst_) {
            return;
        }
        const auto between = (start - lastDay_).count() - 1;
        if (between > 0) {
            throw Failure(kExitParameters, lineText(row) + ": " + countOf(static_cast<std::uint64_t>(between), "day") +
                                               " between " + dayText(lastDay_) + " and " + dayText(start) +
                                               " belong to no epoch; end is an epoch's last day, and the next epoch " +
                                               "starts on the day after it");
        }
        if (between < 0) {
            throw Failure(kExitParameters, lineText(row) + ": the epoch starts on " + dayText(start) +
                                               ", and the one before ends on " + dayText(lastDay_) +
                                               ", so that they overlap; end is an epoch's last day");
        }
    }

    void readValue(const TableRow& row, const TableColumn& column, const std::string& cell) {
        if (cell.empty()) {
            fill(row, column);
            return;
        }
        const double number = readNumber(row, column, cell);
        double value = number * column.factor;
        if (column.kind == Kind::kRainOfEpoch) {
            value *= kYearDays / epoch_.record.days();
        }
        // Options take the same values in single precision.
        epoch_.setValue(column.slot, static_cast<double>(static_cast<float>(value)));
    }

    double readNumber(const TableRow& row, const TableColumn& column, const std::string& cell) const {
        std::string text = cell;
        if (table_.separator != ',' && text.find('.') == std::string::npos) {
            std::ranges::replace(text, ',', '.');
        }
        const std::optional<Measured> measured = splitMeasured(text);
        if (!measured || !measured->unit.empty()) {
            refuse(row, column, cell, "is not a number; leave the cell empty where there is none, and give --fill");
        }
        requirePossible(row, column, cell, *measured);
        return measured->number;
    }

    void requirePossible(const TableRow& row, const TableColumn& column, const std::string& cell,
                         const Measured& measured) const {
        if (measured.number < 0) {
            refuse(row, column, cell,
                   "is negative, as the marks for a missing value are; empty the cell, and give --fill default or "
                   "--fill previous");
        }
        if (column.slot == kAciditySlot && measured.number > kMostAcidity) {
            refuse(row, column, cell, "is no pH, which lies between 0 and 14");
        }
        const std::string other = column.factor == 1 && column.kind == Kind::kValue
                                      ? otherUnitText(column.slot, measured.number, measured.numberText)
                                      : "";
        if (!other.empty()) {
            refuse(row, column, cell,
                   "cannot be in " + std::string(unitsOfValue(column.slot).own) + ": " +
                       other.substr(0, other.find(';')) + "; name the column after its unit, such as " +
                       std::string(unitsOfValue(column.slot).units[1].column));
        }
        if (column.factor != 1 && measured.number * column.factor > unitsOfValue(column.slot).largest) {
            refuse(row, column, cell, "is more than there can be; look for the column's unit");
        }
    }

    void fill(const TableRow& row, const TableColumn& column) {
        if (empty_ == EmptyCells::kRefused) {
            refuse(row, column, "", "is no value; fill the cell in, or give --fill default or --fill previous");
        }
        if (empty_ == EmptyCells::kPrevious) {
            if (isFirst_) {
                refuse(row, column, "", "has no epoch before it to take the value from; fill it in");
            }
            epoch_.setValue(column.slot, previous_.value(column.slot));
        }
    }

    std::string path_;
    TableText table_;
    EmptyCells empty_;
    PlannedEpoch defaults_;
    std::vector<TableColumn> columns_;
    PlannedEpoch epoch_;
    PlannedEpoch previous_;
    Day lastDay_{};
    bool isFirst_ = true;
};

}  // namespace

TableEpochs readEpochTable(const std::string& path, EmptyCells empty, const PlannedEpoch& defaults) {
    return EpochReader(path, readTable(readWholeFile(path, kExitParameters)), empty, defaults).read();
}

}  // namespace talvek::host
