// One reference page as HTML, from its native record. The site decides where
// every page lives; this only writes links relative to the page being rendered.
#pragma once

#include <cstddef>
#include <reference/property/RefItem.hpp>
#include <refpage/docset/DocSet.hpp>
#include <refpage/site/Templates.hpp>
#include <string>
#include <string_view>
#include <vector>

namespace refpage {

/// What a page needs to know of the site it is part of. Everything is borrowed.
struct SitePageView {
    std::size_t index;                           ///< this page's index in `pagePaths`
    std::string_view path;                       ///< this page's site path ("reference/a.html")
    std::vector<std::string> const* pagePaths;   ///< every page's site path, by page index
    DocSet const* set;                           ///< the doc set, whose pages are indexed as `pagePaths`
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

/// Renders `page` with `templates.page`. Links resolve through the doc set; one that leads
/// into its own page ("#fragment", "./#fragment") is a link within this page. A table row or example whose own link leads into this page takes that link's
/// fragment as its `id` (the first one to claim it), so such links have a target. Throws std::exception when a template is broken.
RenderedPage renderSitePage(reference::property::RefItem const& page, SitePageView const& view,
                            SiteTemplates const& templates);

}  // namespace refpage
