#include "talvek/plan/table_text.h"

#include <algorithm>

#include "base/number_text.h"

namespace talvek::host {

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

std::string_view trimmed(std::string_view text) {
    while (!text.empty() && isBlank(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && isBlank(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

/// Takes a cell in quotes from the front of a line, up to the separator behind it.
std::string takeQuoted(std::string_view& line, char separator) {
    std::string cell;
    line.remove_prefix(1);
    while (!line.empty()) {
        const char c = line.front();
        line.remove_prefix(1);
        if (c != '"') {
            cell += c;
        } else if (line.starts_with('"')) {
            cell += '"';
            line.remove_prefix(1);
        } else {
            break;
        }
    }
    line.remove_prefix(std::min(line.find(separator), line.size()));
    return cell;
}

std::vector<std::string> cellsOf(std::string_view line, char separator) {
    std::vector<std::string> cells;
    for (;;) {
        while (!line.empty() && isBlank(line.front()) && line.front() != separator) {
            line.remove_prefix(1);
        }
        if (line.starts_with('"')) {
            cells.push_back(takeQuoted(line, separator));
        } else {
            const std::string_view cell = line.substr(0, line.find(separator));
            cells.emplace_back(trimmed(cell));
            line.remove_prefix(cell.size());
        }
        if (line.empty()) {
            return cells;
        }
        line.remove_prefix(1);
    }
}

char separatorOf(std::string_view line) {
    for (const char separator : {'\t', ';'}) {
        if (line.find(separator) != std::string_view::npos) {
            return separator;
        }
    }
    return ',';
}

}  // namespace

TableText readTable(std::string_view text) {
    TableText table;
    text.remove_prefix(text.starts_with(kByteOrderMark) ? kByteOrderMark.size() : 0);
    for (std::size_t number = 1; !text.empty(); ++number) {
        std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(line.size() + 1, text.size()));
        line.remove_suffix(line.ends_with('\r') ? 1 : 0);
        if (trimmed(line).empty() || line.starts_with('#')) {
            continue;
        }
        if (table.rows.empty()) {
            table.separator = separatorOf(line);
        }
        table.rows.push_back({number, cellsOf(line, table.separator)});
    }
    return table;
}

}  // namespace talvek::host
