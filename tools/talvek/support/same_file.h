// Whether two names stand for one file.
#pragma once

#include <string>

namespace talvek::host {

/// The files need not be there: then it is told from where their names lead. Links are followed.
bool isSameFile(const std::string& a, const std::string& b);

}  // namespace talvek::host
