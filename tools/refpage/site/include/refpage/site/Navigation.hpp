// How a reader moves around a site: every page's place in its package, the package's
// anchor in the index, and the bounded list of pages a page's sidebar shows. Built
// once from per-page summaries, so it never needs a loaded page.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace refpage {

/// What the site knows of one page without loading it.
struct SitePageSummary {
    std::string title;    ///< sitePageTitle of the page
    std::string path;     ///< its site path ("reference/a.html")
    std::string package;  ///< PackageName; empty for none
    std::string purpose;  ///< one line, as written
    bool deprecated = false;
};

/// A sidebar holds every page of its package up to this many; past it, the pages around
/// the current one (half before, half after, in index order) and a link to the package.
inline constexpr std::size_t sidebarPageLimit = 41;

struct SitePackage {
    std::string name;                 ///< "Other pages" for pages without a package
    std::string id;                   ///< its anchor in index.html ("package-numpy"), unique
    std::vector<std::size_t> pages;   ///< page indexes by title (ASCII case ignored first), then page order
};

class SiteNavigation {
public:
    /// Groups `pages` by package (ASCII case ignored first, then as written; no package last).
    explicit SiteNavigation(std::vector<SitePageSummary> pages);

    std::vector<SitePageSummary> const& pages() const noexcept { return pages_; }
    std::vector<SitePackage> const& packages() const noexcept { return packages_; }

    /// The package of page `page` (an index into packages()).
    std::size_t packageOf(std::size_t page) const { return packageOf_.at(page); }
    /// Where page `page` stands in its package's list.
    std::size_t placeOf(std::size_t page) const { return placeOf_.at(page); }

    /// The pages page `page`'s sidebar lists, in order: at most sidebarPageLimit.
    std::vector<std::size_t> sidebarOf(std::size_t page) const;

private:
    std::vector<SitePageSummary> pages_;
    std::vector<SitePackage> packages_;
    std::vector<std::size_t> packageOf_;
    std::vector<std::size_t> placeOf_;
};

}  // namespace refpage
