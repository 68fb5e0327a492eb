// Tables as text, whichever of the usual characters divides their cells.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace talvek::host {

struct TableRow {
    /// Counted from 1.
    std::size_t line = 0;
    std::vector<std::string> cells;
};

struct TableText {
    /// The first row has the columns' names.
    std::vector<TableRow> rows;
    /// ',', ';' or a tab.
    char separator = ',';
};

/// Tabs divide the cells where the first row has one, then semicolons, then commas. Cells may stand in double quotes,
/// with a quote doubled inside. Blanks around cells, empty lines, and lines that begin with '#' are passed over, and so
/// is a byte order mark.
TableText readTable(std::string_view text);

}  // namespace talvek::host
