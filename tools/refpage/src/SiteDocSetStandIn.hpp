// TEMPORARY: link resolution and the docset's SQLite index until the doc set's own
// DocSet and LookupIndex reach this branch; then this file and its .cpp go, and the
// commands use DocSet::resolve and writeLookupIndex instead.
#pragma once

#include <filesystem>
#include <refpage/PageError.hpp>
#include <refpage/Site.hpp>
#include <span>
#include <string>
#include <vector>

namespace refpage::site_standin {

/// Links relative to the doc set's root resolve to the first page with that Href
/// (without fragment); links with a scheme, "//" or "/" are external.
SiteLinkResolver makeResolver(std::span<SitePageInput const> pages);

/// docSet.dsidx: table searchIndex(id, name, type, path), one row per entity of every
/// page, path = the page's site path. Returns false with an error when it cannot write.
bool writeIndex(std::filesystem::path const& file, std::span<SitePageInput const> pages,
                std::vector<std::string> const& paths, PageErrors& errors);

}  // namespace refpage::site_standin

