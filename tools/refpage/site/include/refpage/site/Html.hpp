// Page text made into HTML. Every function returns markup in which page text can
// only ever be text: no element, attribute, script, style or URL comes from it.
#pragma once

#include <string>
#include <string_view>

namespace refpage {

/// `text` for HTML text or a double- or single-quoted attribute: & < > " ' escaped;
/// control characters other than tab and line feed, and invalid UTF-8, become U+FFFD.
std::string escapeHtml(std::string_view text);

/// True for an absolute "http:" or "https:" URL (scheme in any case) with no
/// whitespace or control character: the only external links a site writes.
bool isWebUrl(std::string_view url);

}  // namespace refpage
