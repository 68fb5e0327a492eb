#include "weathering/map_loading.h"

#include <string_view>

#include "api/session/log_lines.h"
#include "api/session/report.h"
#include "api/session/session.h"

namespace talvek {

std::unique_ptr<MineralMap> loadAndReportMap(bool canCarryMap) {
    const std::string_view name = session().bmpFileName;
    std::unique_ptr<MineralMap> map = canCarryMap ? readMineralMap(session().bmpFileName) : nullptr;
    if (map != nullptr) {
        report("\n%s%s%s\n\tStone will be considered inhomogeneous.\n", {kMapLineStart, name, kMapLoadedEnd});
    } else {
        report("\n%s%s%s\n\tStone will be considered homogeneous.\n", {kMapLineStart, name, kMapNotLoadedEnd});
    }
    return map;
}

}  // namespace talvek
