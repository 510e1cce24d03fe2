// How a link written in a page is read: relative to the doc set's root unless it is
// absolute ("scheme:...", "//host/...", "/path"), a fragment leading into the page that
// holds it, and "./" leading to the root.
#pragma once

#include <string_view>

namespace refpage {

/// True for a link that names nothing of the doc set: "scheme:..." as RFC 3986 spells a
/// scheme (a letter, then letters, digits, '+', '-' or '.'), "//host/..." and "/path".
bool isExternalLink(std::string_view link) noexcept;

/// The part of a relative link that names a page: no fragment, no leading "./".
std::string_view linkPagePart(std::string_view link) noexcept;

}  // namespace refpage
