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

/// Paths the site keeps for itself; no page is given one of these (compared ignoring ASCII case).
inline constexpr std::string_view siteIndexPath = "index.html";
inline constexpr std::string_view siteNotFoundPath = "404.html";
inline constexpr std::string_view siteAssetFolder = "_site/";

/// `href` without its fragment when it is a usable page path: a safe relative path
/// (safeRelativePath) that ends in ".html" or ".htm" and is not one the site keeps
/// (index.html, 404.html, _site/...).
std::optional<std::string> safePagePath(std::string_view href);

/// A path for a page whose Href cannot be used: "pages/<name>.html" where name keeps
/// only ASCII letters, digits, '.', '_' and '-' of `name` ("page" when none is left),
/// with "-2", "-3", ... added by the caller's `attempt` (0 for none).
std::string derivedPagePath(std::string_view name, std::size_t attempt);

/// Why a page does not keep its Href.
enum class HrefRefusal {
    none,      ///< the page has no Href
    unsafe,    ///< not a safe relative .html path
    reserved,  ///< a path the site keeps for itself
    tooLong,   ///< a segment or the whole longer than the limits above
    taken,     ///< an earlier page keeps the same path
    blocked,   ///< a folder of it is another page's file ("a.html/b.html" beside "a.html")
};

struct PagePathAssignment {
    std::vector<std::string> paths;       ///< one per page, in page order; all distinct, ignoring ASCII case
    std::vector<std::size_t> derived;     ///< indexes of pages whose Href was not kept, ascending
    std::vector<HrefRefusal> refusals;    ///< why, one per entry of `derived`
};

/// Paths for pages given their Hrefs and names, in order. A page keeps its safe Href unless
/// an earlier page keeps the same path or one of its folders is another page's file (or
/// index.html, 404.html): a page's file wins over another page's folder, whatever their order.
/// The others get derivedPagePath paths that no kept path or earlier derived path holds,
/// as a file or a folder. Every path is compared ignoring ASCII case, as file systems may.
/// Guarantees: no path is a folder of another, none is reserved, all are safeRelativePath.
/// Linear in the total length of the Hrefs and names.
PagePathAssignment assignPagePaths(std::vector<std::string> const& hrefs, std::vector<std::string> const& names);

/// The warning's reason for a page given a derived path: "the page has no Href", "another
/// page has the same Href", "Href \"...\" is ..." (the Href quoted and cut to 80 bytes).
std::string refusalReason(std::string_view href, HrefRefusal refusal);

/// The URL that leads from the file at `from` to the file at `to` (both site paths),
/// percent-encoded: "reference/a/x.html" to "reference/b.html" gives "../b.html".
std::string relativeUrl(std::string_view from, std::string_view to);

/// "../" once per folder of `from`: the way back to the site's root ("" at the root).
std::string rootPrefix(std::string_view from);

}  // namespace refpage
