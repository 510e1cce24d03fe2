// Rendering through libmstch with the site's HTML escaping and partials. Internal
// to the pages library: mstch types never appear in a public header.
#pragma once

#include <mstch/mstch.hpp>
#include <refpage/site/Templates.hpp>
#include <string>

namespace refpage {

/// Renders `text` with the partials `link` and `search` of `templates`. Every `{{x}}`
/// goes through escapeHtml. Safe to call from several threads.
std::string renderMustache(std::string const& text, mstch::node const& context, SiteTemplates const& templates);

}  // namespace refpage
