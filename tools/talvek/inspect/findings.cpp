#include "talvek/inspect/findings.h"

#include "talvek/support/messages.h"

namespace talvek::host {

std::string shareText(double part, double whole) {
    return briefNumber(whole > 0 ? 100 * part / whole : 0) + " %";
}

std::string partText(std::int64_t part, std::int64_t whole, const std::string& things) {
    return std::to_string(part) + " of " + std::to_string(whole) + " " + things;
}

}  // namespace talvek::host
