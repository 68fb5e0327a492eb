#include "talvek/view/page_table.h"

#include "talvek/view/markup.h"
#include "talvek/view/page_template.h"

namespace talvek::host {

namespace {

/// What depends on the kind of change is called by it: "column.mean.loss".
std::string columnText(const std::string& key, ChangeKind kind) {
    const bool dependsOnKind =
        key == "mean" || key == "largest" || key == "smallest" || key == "volume" || key == "epochVolume";
    return pageText("column." + key + (dependsOnKind ? "." + nameOf(kind) : ""));
}

std::string headOf(const std::vector<NamedFigure>& row, ChangeKind kind) {
    std::string head = "<thead><tr><th scope=\"col\">" + htmlText(pageText("column.epoch")) + "</th>";
    for (const NamedFigure& column : row) {
        const std::string unit = pageText("unit." + column.key);
        head += "<th scope=\"col\" data-key=\"" + htmlText(column.key) + "\">" +
                htmlText(columnText(column.key, kind)) +
                (unit.empty() ? "" : " <span class=\"unit\">" + htmlText(unit) + "</span>") + "</th>";
    }
    return head + "</tr></thead>\n";
}

}  // namespace

std::string epochTable(const std::vector<EpochRow>& rows, ChangeKind kind) {
    std::string table = "<table id=\"epochs\"><caption>" + htmlText(pageText("table.caption")) + "</caption>\n" +
                        headOf(rows.front().figures, kind) + "<tbody>\n";
    for (const EpochRow& row : rows) {
        table += "<tr><th scope=\"row\">" + std::to_string(row.epoch) + "</th>";
        for (const NamedFigure& cell : row.figures) {
            table += "<td>" + htmlText(cell.text) + "</td>";
        }
        table += "</tr>\n";
    }
    return table + "</tbody></table>\n";
}

}  // namespace talvek::host
