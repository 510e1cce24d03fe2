// Page text made into HTML. Every function returns markup in which page text can
// only ever be text: no element, attribute, script, style or URL comes from it.
#pragma once

#include <string>
#include <string_view>

namespace refpage {

/// `text` for HTML text or a double- or single-quoted attribute: & < > " ' escaped;
/// control characters other than tab and line feed, and invalid UTF-8, become U+FFFD.
std::string escapeHtml(std::string_view text);

/// A description as HTML. Blocks are separated by blank lines. A block with a line
/// that starts with a space or a tab, or a line of only '=', '-' and spaces (a text
/// table rule), is preformatted (`<pre>`, lines and spacing kept; neighbouring
/// preformatted blocks share one `<pre>` with their blank lines); any other block is a
/// paragraph (`<p>`), its lines wrapping as a browser wraps text. Nothing else is
/// interpreted: markup-like text shows as written.
std::string descriptionHtml(std::string_view text);

/// True for an absolute "http:" or "https:" URL (scheme in any case) with no
/// whitespace or control character: the only external links a site writes.
bool isWebUrl(std::string_view url);

}  // namespace refpage
