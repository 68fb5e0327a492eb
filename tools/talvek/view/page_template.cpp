#include "talvek/view/page_template.h"

#include <cstddef>

#include "talvek/support/exit_status.h"

namespace talvek::host {

extern const unsigned char kPageTemplate[];
extern const std::size_t kPageTemplateSize;

std::string_view pageTemplate() {
    return {reinterpret_cast<const char*>(kPageTemplate), kPageTemplateSize};
}

std::pair<std::string_view, std::string_view> splitAt(std::string_view page, std::string_view marker) {
    const std::size_t at = page.find(marker);
    if (at == std::string_view::npos) {
        throw Failure(kExitInternal, "the page's template lacks " + std::string(marker));
    }
    return {page.substr(0, at), page.substr(at + marker.size())};
}

std::string pageText(std::string_view name) {
    // The texts stand in a comment of their own behind the page, one a line.
    const auto [page, texts] = splitAt(pageTemplate(), "<!--talvek:texts\n");
    const std::string_view rest = splitAt(texts, std::string(name) + "=").second;
    return std::string(rest.substr(0, rest.find('\n')));
}

}  // namespace talvek::host
