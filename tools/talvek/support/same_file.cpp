#include "talvek/support/same_file.h"

#ifdef _WIN32
#define WIN32_LEAN_AND_MEAN
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>
#endif

#include <system_error>

#include "base/system.h"
#include "talvek/support/paths.h"

namespace talvek::host {

namespace fs = std::filesystem;

namespace {

bool isSamePath(const fs::path& a, const fs::path& b) {
#ifdef _WIN32
    // As the file system compares names: without regard to case, whatever the language.
    return ::CompareStringOrdinal(a.c_str(), -1, b.c_str(), -1, TRUE) == CSTR_EQUAL;
#else
    return a == b;
#endif
}

fs::path whereItLeads(const std::string& name) {
    std::error_code isUnknown;
    const fs::path target = pathOf(system::linkTarget(name.c_str()));
    const fs::path whole = fs::weakly_canonical(fs::absolute(target, isUnknown), isUnknown);
    return isUnknown ? target : whole;
}

}  // namespace

bool isSameFile(const std::string& a, const std::string& b) {
    std::error_code isAbsent;
    return fs::equivalent(pathOf(a), pathOf(b), isAbsent) || isSamePath(whereItLeads(a), whereItLeads(b));
}

}  // namespace talvek::host
