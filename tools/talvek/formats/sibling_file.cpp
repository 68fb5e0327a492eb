#include "talvek/formats/sibling_file.h"

#include <algorithm>

#include "talvek/support/paths.h"

namespace talvek::host {

std::string siblingFile(const std::string& mesh, std::string_view name) {
    std::string relative(name);
    std::ranges::replace(relative, '\\', '/');
    const bool hasRoot = relative.starts_with('/') || relative.find(':') != std::string::npos;
    const bool leadsUp = ("/" + relative + "/").find("/../") != std::string::npos;
    if (relative.empty() || hasRoot || leadsUp || relative.find('\0') != std::string::npos) {
        return "";
    }
    return nameOf(pathOf(mesh).parent_path() / pathOf(relative));
}

}  // namespace talvek::host
