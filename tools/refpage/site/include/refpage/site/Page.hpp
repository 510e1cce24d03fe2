// One reference page as HTML, from its native record. The site decides where
// every page lives; this only writes links relative to the page being rendered.
#pragma once

#include <cstddef>
#include <functional>
#include <reference/property/RefItem.hpp>
#include <refpage/site/Templates.hpp>
#include <string>
#include <string_view>
#include <vector>

namespace refpage {

/// Where a link written in a page leads (links are relative to the doc set's root).
struct SiteLink {
    enum class Kind { Empty, External, Page, Unresolved } kind = Kind::Empty;
    std::size_t page = 0;   ///< index of the target page when kind == Page
    std::string fragment;   ///< the text after '#', without it; may be empty
};

/// Resolves a link's UTF-8 text; must be callable from several threads at once.
using SiteLinkResolver = std::function<SiteLink(std::string_view link)>;

/// What a page needs to know of the site it is part of. Everything is borrowed.
struct SitePageView {
    std::size_t index;                           ///< this page's index in `pagePaths`
    std::string_view path;                       ///< this page's site path ("reference/a.html")
    std::vector<std::string> const* pagePaths;   ///< every page's site path, by page index
    SiteLinkResolver const* resolve;             ///< the doc set's link resolution
    std::string_view siteTitle;                  ///< shown in the header and <title>
    std::string_view lang;                       ///< the pages' language tag ("en")
};

struct RenderedPage {
    std::string html;                     ///< the whole document
    std::vector<std::string> unresolved;  ///< JSON pointers of links shown as text because they lead nowhere
};

/// The Content-Security-Policy of every page: only the site's own scripts, styles and images.
inline constexpr std::string_view siteContentSecurityPolicy =
    "default-src 'none'; script-src 'self'; style-src 'self'; img-src 'self'; base-uri 'none'; form-action 'none'";

/// The page's title: its first entity's name, or its Href when it names none.
std::string sitePageTitle(reference::property::RefItem const& page);

/// Renders `page` with `templates.page`. A link of only "#fragment" leads into this
/// page. A table row or example whose own link leads into this page takes that link's
/// fragment as its `id` (the first one to claim it), so such links have a target. Throws std::exception when a template is broken.
RenderedPage renderSitePage(reference::property::RefItem const& page, SitePageView const& view,
                            SiteTemplates const& templates);

}  // namespace refpage
