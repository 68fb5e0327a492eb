#include "api/session/session_inputs.h"

#include <algorithm>
#include <optional>

#include "api/session/session.h"
#include "base/system.h"

namespace talvek {

bool isSameFileAsAny(const char* path, std::initializer_list<const char*> others) {
    const std::optional<system::FileStamp> file = system::stampOf(path);
    return file && std::ranges::any_of(others, [&file](const char* other) {
               const std::optional<system::FileStamp> stamp = system::stampOf(other);
               return stamp && stamp->isSameFile(*file);
           });
}

bool isSessionInput(const char* path) {
    const TalvekSession& current = session();
    return isSameFileAsAny(path, {current.fileName, current.bmpFileName, current.cfgFileName});
}

}  // namespace talvek
