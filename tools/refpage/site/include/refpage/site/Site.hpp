// A static HTML site from a doc set: one HTML file per page at the path of its Href,
// an index page, the stylesheet and the search scripts. Same pages, same bytes, on any
// number of threads.
#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <refpage/docset/LoadSet.hpp>
#include <refpage/docset/LookupIndex.hpp>
#include <refpage/format/PageError.hpp>
#include <refpage/interchange/Inventory.hpp>
#include <refpage/site/Page.hpp>
#include <refpage/site/Search.hpp>
#include <refpage/site/Templates.hpp>
#include <refpage/support/OutputFolder.hpp>
#include <span>
#include <string>
#include <vector>

namespace refpage {

struct SiteOptions {
    std::filesystem::path output;   ///< the site's root folder; created when missing
    SiteTemplates templates = SiteTemplates::defaults();
    unsigned jobs = 1;              ///< threads rendering pages; the output does not depend on it
    std::string title = "Reference";
    std::string lang = "en";
    std::string version;            ///< the documented project's version, for objects.inv; may be empty
    std::string baseUrl;            ///< where the site is served ("https://x/docs/"), or empty; 404.html links from it
    bool docset = false;            ///< pages for a docset browser: no site header or search, dashAnchor anchors
    LoadOptions load;               ///< how pages are loaded again for rendering
    std::optional<std::filesystem::path> assets;  ///< where referenced files are copied from; none: no file is
};

struct SiteReport {
    std::vector<std::string> paths;  ///< each page's site path, by the doc set's page index
    PageErrors warnings;             ///< unusable or clashing Hrefs, unresolved links (one per link)
    PageErrors errors;               ///< pages that failed to load again, files not written, broken templates
    std::size_t pagesWritten = 0;
    std::size_t unresolvedLinks = 0;
    std::size_t movedPages = 0;      ///< pages written at a derived path
    bool committed = false;          ///< the output now holds this build; otherwise it is as it was

    bool ok() const noexcept { return errors.empty(); }
};

/// The site's path of every page of `set`, with a warning for each page given a derived path.
SiteReport planSite(DocSet const& set);

/// Writes the whole site of `loaded` into `out` under `prefix` ("" for its root): every page
/// of the set, loaded again from `inputs` (`loaded.inputOf` names each page's input) and
/// released as soon as it is written, then `index.html`, `404.html`, `objects.inv` and
/// `_site/` (style.css, site.js, search.js, search-rank.js, and the search files in
/// `_site/search/`). After the first failed write, nothing more is written; the report's
/// errors name it once.
SiteReport writeSite(LoadedSet const& loaded, std::span<PageInput const> inputs, SiteOptions const& options,
                     OutputFolder& out, std::string_view prefix);

/// Commits `out` when `report` holds no error (and says so in `report.committed`); otherwise,
/// or when the commit fails, the target stays as it was and the error is added to the report.
void commitSite(OutputFolder& out, SiteReport& report);

/// The site of `loaded` at `options.output`, whole or not at all: written into a new folder
/// beside it (OutputFolder) and put in its place only when every page and file was written.
/// Throws FileError when `options.output` may not be replaced (see OutputFolder).
SiteReport buildSite(LoadedSet const& loaded, std::span<PageInput const> inputs, SiteOptions const& options);

/// What the site's navigation and index know of each page (title, path, package, purpose,
/// deprecated), in page order.
std::vector<SitePageSummary> siteSummaries(DocSet const& set, std::vector<std::string> const& paths);

/// The lookup entries of `set` (one per entity of every page), each with its page's site path
/// from `paths`, percent-encoded, as its link and as it is as its source (never the page's
/// file on the machine that built the site): what the docset's index and the inventory list.
std::vector<LookupEntry> siteLookupEntries(DocSet const& set, std::vector<std::string> const& paths);

/// The search entries of the site, from the summaries alone: one per entry of the lookup index
/// in the same order, with the same texts, each leading to its page's site path (percent-encoded)
/// and its anchor there. What writeSearchFiles writes and the inventory lists.
std::vector<SearchEntry> siteSearchEntries(DocSet const& set, std::vector<std::string> const& paths);

/// The site's objects.inv entries: one per search entry, its name, entity type and path.
std::vector<InventoryEntry> siteInventoryEntries(std::span<SearchEntry const> entries);

}  // namespace refpage
