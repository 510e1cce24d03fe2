// Where each page of a site is written, and links between the site's files.
// Every path here is relative to the site's root folder, '/'-separated UTF-8.
#pragma once

#include <cstddef>
#include <optional>
#include <refpage/support/RelativePath.hpp>
#include <string>
#include <string_view>
#include <vector>

namespace refpage {

/// Paths the site writes itself; no page is given one of these.
inline constexpr std::string_view siteIndexPath = "index.html";
inline constexpr std::string_view siteAssetFolder = "_site/";

/// `href` without its fragment when it is a usable page path: not empty, relative,
/// no "." or ".." or empty segment, no backslash, no control character, no '?',
/// ends in ".html" or ".htm", and not inside the site's own folder or its index page.
std::optional<std::string> safePagePath(std::string_view href);

/// A path for a page whose Href cannot be used: "pages/<name>.html" where name keeps
/// only ASCII letters, digits, '.', '_' and '-' of `name` ("page" when none is left),
/// with "-2", "-3", ... added by the caller's `attempt` (0 for none).
std::string derivedPagePath(std::string_view name, std::size_t attempt);

struct PagePathAssignment {
    std::vector<std::string> paths;  ///< one per page, in page order; all distinct, ignoring ASCII case
    std::vector<std::size_t> derived;  ///< indexes of pages whose Href was unusable or taken
};

/// Paths for pages given their Hrefs and names, in order: a page keeps its safe Href
/// unless an earlier page holds it (compared ignoring ASCII case, as file systems may).
PagePathAssignment assignPagePaths(std::vector<std::string> const& hrefs, std::vector<std::string> const& names);

/// The URL that leads from the file at `from` to the file at `to` (both site paths),
/// percent-encoded: "reference/a/x.html" to "reference/b.html" gives "../b.html".
std::string relativeUrl(std::string_view from, std::string_view to);

/// "../" once per folder of `from`: the way back to the site's root ("" at the root).
std::string rootPrefix(std::string_view from);

/// `text` percent-encoded for a URL path ('/' kept) or, with `fragment`, a fragment.
/// Keeps ASCII letters, digits and "-._~"; every other byte becomes %XX.
std::string percentEncode(std::string_view text, bool fragment = false);

}  // namespace refpage
