// A static HTML site from a set of pages: one HTML file per page at the path of its
// Href, an index page, the stylesheet and the search scripts. Same pages, same bytes.
#pragma once

#include <cstddef>
#include <filesystem>
#include <reference/property/RefItem.hpp>
#include <refpage/docset/DocSet.hpp>
#include <refpage/docset/LookupIndex.hpp>
#include <refpage/format/PageError.hpp>
#include <refpage/site/Page.hpp>
#include <refpage/site/Search.hpp>
#include <refpage/site/Templates.hpp>
#include <span>
#include <string>
#include <vector>

namespace refpage {

/// One page of the site; `page` is borrowed and must outlive the build.
struct SitePageInput {
    std::string source;                          ///< the file it came from; warnings name it
    reference::property::RefItem const* page;    ///< the native page
};

struct SiteOptions {
    std::filesystem::path output;   ///< the site's root folder; created when missing
    SiteTemplates templates = SiteTemplates::defaults();
    unsigned jobs = 1;              ///< threads rendering pages; the output does not depend on it
    std::string title = "Reference";
    std::string lang = "en";
    std::string baseUrl;            ///< where the site is served ("https://x/docs/"), or empty; 404.html links from it
    bool docset = false;            ///< pages for a docset browser: no site header or search, dashAnchor anchors
};

struct SiteReport {
    std::vector<std::string> paths;  ///< each page's site path, in page order
    PageErrors warnings;             ///< unusable or clashing Hrefs, unresolved links (one per link)
    PageErrors errors;               ///< files that could not be written, broken templates
    std::size_t unresolvedLinks = 0;

    bool ok() const noexcept { return errors.empty(); }
};

/// The site's paths for `pages`, with a warning for each page given a derived path.
SiteReport planSite(std::span<SitePageInput const> pages);

/// Writes the whole site under `options.output`: pages, `index.html`, `404.html`, and `_site/`
/// (style.css, site.js, search.js, search-rank.js, and the search files in `_site/search/`). Existing files of those
/// names are replaced; nothing else in the folder is touched.
SiteReport buildSite(std::span<SitePageInput const> pages, SiteLinkResolver const& resolve,
                     SiteOptions const& options);

/// What the site's navigation and index know of each page (title, path, package, purpose,
/// deprecated), in page order.
std::vector<SitePageSummary> siteSummaries(std::span<SitePageInput const> pages, std::vector<std::string> const& paths);

/// The doc set of the site's pages (borrowed: the pages must outlive it), whose link
/// resolution and lookup entries the site uses.
DocSet siteDocSet(std::span<SitePageInput const> pages);

/// Links resolved by `set`, for rendering; callable from several threads at once. `set` must outlive it.
SiteLinkResolver siteLinkResolver(DocSet const& set);

/// The lookup entries of `set` (one per entity of every page), each with its page's site
/// path from `paths` as its href: what the docset's index lists.
std::vector<LookupEntry> siteLookupEntries(DocSet const& set, std::vector<std::string> const& paths);

/// The search entries of the site's pages (one per entity of every page, as the lookup
/// index has them), each with its page's site path: what writeSearchFiles writes.
std::vector<SearchEntry> siteSearchEntries(std::span<SitePageInput const> pages, std::vector<std::string> const& paths);

}  // namespace refpage
