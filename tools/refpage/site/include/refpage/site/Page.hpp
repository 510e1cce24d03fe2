// One reference page as HTML, from its native record. The site decides where
// every page lives; this only writes links relative to the page being rendered.
#pragma once

#include <cstddef>
#include <functional>
#include <reference/property/RefItem.hpp>
#include <refpage/docset/DocSet.hpp>
#include <refpage/site/Navigation.hpp>
#include <refpage/site/Templates.hpp>
#include <string>
#include <string_view>
#include <vector>

namespace refpage {

/// Whether a file the page references (a safe path relative to the site's root) is in the
/// site; must be callable from several threads at once.
using SiteAssetCheck = std::function<bool(std::string_view path)>;

/// What a page needs to know of the site it is part of. Everything is borrowed.
struct SitePageView {
    std::size_t index;                           ///< this page's index in `pagePaths`
    std::string_view path;                       ///< this page's site path ("reference/a.html")
    std::vector<std::string> const* pagePaths;   ///< every page's site path, by page index
    DocSet const* set;                           ///< the doc set, whose pages are indexed as `pagePaths`
    std::string_view siteTitle;                  ///< shown in the header and <title>
    std::string_view lang;                       ///< the pages' language tag ("en")
    SiteNavigation const* navigation = nullptr;  ///< sidebar and breadcrumbs; null: neither
    SiteAssetCheck const* assetExists = nullptr; ///< null: every referenced file is taken to be there
    bool docset = false;                         ///< for a docset: no site header or search; dashAnchor anchors
};

struct RenderedPage {
    std::string html;                     ///< the whole document
    std::vector<std::string> unresolved;  ///< JSON pointers of links shown as text because they lead nowhere
};

/// The Content-Security-Policy of every page: only the site's own scripts, styles and images.
inline constexpr std::string_view siteContentSecurityPolicy =
    "default-src 'none'; script-src 'self'; style-src 'self'; img-src 'self'; base-uri 'none'; form-action 'none'";

/// Renders `page` with `templates.page`: every anchor of anchorsOf(page) as an id with a
/// visible anchor link, the description as CommonMark, names in tables breakable only after
/// '.' and '_'. Links, the description's relative ones included, resolve through the doc set;
/// one that leads into its own page ("#fragment", "./#fragment") is a link within this page,
/// one that leads nowhere is text and reported by its pointer ("/Description" for the
/// description's). Throws TemplateError when a template is broken.
RenderedPage renderSitePage(reference::property::RefItem const& page, SitePageView const& view,
                            SiteTemplates const& templates);

/// What the index and the 404 page need of the site.
struct SiteIndexView {
    SiteNavigation const* navigation;  ///< every page by package; borrowed, never null
    std::string_view siteTitle;
    std::string_view lang;
    std::string_view root;             ///< how the 404 page reaches the site's root: "" or the base URL with '/'
};

/// The index page: every package with a jump link, then its pages by title with their
/// purposes; deprecated pages marked. Throws TemplateError when a template is broken.
std::string renderSiteIndex(SiteIndexView const& view, SiteTemplates const& templates);

/// 404.html: a page for a missing file, linking to the index. Throws TemplateError.
std::string renderSiteNotFound(SiteIndexView const& view, SiteTemplates const& templates);

}  // namespace refpage
