// Text that stands in a page as text, whatever is in it.
#pragma once

#include <string>
#include <string_view>

namespace talvek::host {

/// For the content of an element and the value of an attribute.
std::string htmlText(std::string_view text);

}  // namespace talvek::host
