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

/// Writes the whole site under `options.output`: pages, `index.html`, and `_site/`
/// (style.css, search.js, search-rank.js, search-index.js). Existing files of those
/// names are replaced; nothing else in the folder is touched.
SiteReport buildSite(std::span<SitePageInput const> pages, SiteLinkResolver const& resolve,
                     SiteOptions const& options);

/// The index page: every page by package (ASCII-case-insensitive order, pages without
/// a package last), then by title, with its purpose; deprecated pages marked.
std::string renderSiteIndex(std::span<SitePageInput const> pages, std::vector<std::string> const& paths,
                            SiteOptions const& options);

/// The doc set of the site's pages (borrowed: the pages must outlive it), whose link
/// resolution and lookup entries the site uses.
DocSet siteDocSet(std::span<SitePageInput const> pages);

/// Links resolved by `set`, for rendering; callable from several threads at once. `set` must outlive it.
SiteLinkResolver siteLinkResolver(DocSet const& set);

/// The lookup entries of `set` (one per entity of every page), each with its page's site
/// path from `paths` as its href: what the docset's index lists.
std::vector<LookupEntry> siteLookupEntries(DocSet const& set, std::vector<std::string> const& paths);

/// `_site/search-index.js`: defines `window.refpageSearchIndex`, the lookup index's search
/// data (`LookupIndex::searchData`, what search-rank.js ranks exactly as `refpage find` does)
/// with each entry's `path`, its page's site path relative to the site's root.
std::string siteSearchIndexScript(std::span<SitePageInput const> pages, std::vector<std::string> const& paths);

}  // namespace refpage
