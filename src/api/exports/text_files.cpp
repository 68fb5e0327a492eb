// Exported functions: the text files of the host.
#include <string>
#include <string_view>

#include "api/exports/common.h"
#include "api/session/report.h"
#include "base/message_format.h"
#include "base/system.h"
#include "talvek.h"

using talvek::guarded;

namespace {

std::int32_t appendText(const char* path, std::string_view text) {
    std::string expanded(text);
    expanded.resize(talvek::expandWithoutArguments(text, expanded.data()));
    talvek::system::writeToStandardOutput(expanded);
    talvek::system::File file = talvek::system::File::openForAppending(path);
    const bool isWritten = file.isOpen() && talvek::writeText(file, expanded);
    return isWritten && file.close() ? TALVEK_OK : TALVEK_ERROR_RANGE;
}

}  // namespace

extern "C" {

int32_t talvekResetLogFile(const char* path) {
    if (path == nullptr) {
        return TALVEK_ERROR_NULL;
    }
    talvek::system::File file = talvek::system::File::openForWriting(path);
    return file.isOpen() && file.close() ? TALVEK_OK : TALVEK_ERROR_RANGE;
}

int32_t talvekAppendLogFile(const char* path, const char* text) {
    if (path == nullptr || text == nullptr) {
        return TALVEK_ERROR_NULL;
    }
    return guarded(TALVEK_ERROR_RANGE, [=] { return appendText(path, text); });
}

}  // extern "C"
