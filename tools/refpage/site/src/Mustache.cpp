#include "Mustache.hpp"

#include <mutex>
#include <refpage/site/Html.hpp>

namespace refpage {

std::string renderMustache(std::string const& text, mstch::node const& context, SiteTemplates const& templates) {
    // mstch keeps its escaping in one global; it is set once, before any render reads it.
    static std::once_flag escaping;
    std::call_once(escaping, [] { mstch::config::escape = [](std::string const& s) { return escapeHtml(s); }; });
    return mstch::render(text, context, {{"link", templates.link}, {"search", templates.search}});
}

}  // namespace refpage
