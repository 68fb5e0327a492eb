#include "weathering/session_map.h"

#include <string_view>

#include "api/session/report.h"
#include "api/session/session.h"

namespace talvek {

std::unique_ptr<MineralMap> reportedMineralMap(bool canCarryMap) {
    const std::string_view name = session().bmpFileName;
    std::unique_ptr<MineralMap> map = canCarryMap ? readMineralMap(session().bmpFileName) : nullptr;
    report(map != nullptr ? "\nMineral map %s loaded!\n\tStone will be considered inhomogeneous.\n"
                          : "\nMineral map %s NOT loaded!\n\tStone will be considered homogeneous.\n",
           {name});
    return map;
}

}  // namespace talvek
