#include <fmt/format.h>

#include <refpage/interchange/ExternalLinks.hpp>
#include <refpage/support/Escape.hpp>

namespace refpage {

PageErrors externalLinkFindings(PageSummary const& page, ExternalInventories const& inventories) {
    PageErrors findings;
    for (auto const& link : page.links) {
        std::string const& text = link.text;
        auto const resolution = inventories.resolve(text);
        if (resolution.verdict != ExternalInventories::Verdict::Missing) continue;
        findings.push_back(PageError{page.source, link.pointer,
                                     fmt::format("link {} names nothing that the inventory of {} ({}) lists",
                                                 refpage::quoted(text), refpage::quoted(resolution.baseUrl),
                                                 refpage::quoted(resolution.source))});
    }
    return findings;
}

}  // namespace refpage
