#include <fmt/format.h>

#include <refpage/interchange/ExternalLinks.hpp>
#include <refpage/support/Escape.hpp>
#include <refpage/support/Text.hpp>

#include "PageLinks.hpp"

namespace refpage {

PageErrors externalLinkFindings(reference::property::RefItem const& page, std::string_view source,
                                ExternalInventories const& inventories) {
    PageErrors findings;
    for (auto const& link : pageLinks(page)) {
        if (link.text->empty()) continue;
        std::string const text = utf8(*link.text);
        auto const resolution = inventories.resolve(text);
        if (resolution.verdict != ExternalInventories::Verdict::Missing) continue;
        findings.push_back(PageError{std::string(source), link.pointer,
                                     fmt::format("link {} names nothing that the inventory of {} ({}) lists",
                                                 refpage::quoted(text), refpage::quoted(resolution.baseUrl),
                                                 refpage::quoted(resolution.source))});
    }
    return findings;
}

}  // namespace refpage
