// What a run tells its user.
#pragma once

#include <initializer_list>
#include <string_view>

#include "base/message_format.h"
#include "base/system.h"

namespace talvek {

/// Formats a message into the session's message buffer, as formatMessage does, and writes it to standard output and,
/// where one is open, to the run log.
void report(std::string_view format, std::initializer_list<MessageArgument> arguments = {});

/// Writes text to a text file, with the platform's line ends. Returns false when it could not be written.
bool writeText(system::File& file, std::string_view text, std::string_view lineEnd = system::kLineEnd);

}  // namespace talvek
