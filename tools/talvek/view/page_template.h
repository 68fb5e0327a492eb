// The page as the bundler has left it: style and script are in it, the places for a run's own content are marked.
#pragma once

#include <string>
#include <string_view>
#include <utility>

namespace talvek::host {

/// The whole template, which is part of the program.
std::string_view pageTemplate();

/// The template's text before a marker such as "<!--talvek:table-->", and what comes behind it.
std::pair<std::string_view, std::string_view> splitAt(std::string_view page, std::string_view marker);

/// A text of the page by its name, for what the program itself writes into the page.
std::string pageText(std::string_view name);

}  // namespace talvek::host
