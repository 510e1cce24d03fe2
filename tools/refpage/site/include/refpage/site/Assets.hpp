// The files pages reference (thumbnails, images in descriptions) copied into the site,
// each once, from the assets folder.
#pragma once

#include <refpage/docset/DocSet.hpp>
#include <refpage/format/PageError.hpp>
#include <refpage/support/AssetFolder.hpp>
#include <refpage/support/OutputFolder.hpp>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace refpage {

/// Copies every file the pages of `set` reference that `assets` holds into `out` under
/// `prefix`, at its own path, unless that path is or would hold a page's path (`pagePaths`) or
/// one the site keeps (index.html, 404.html, objects.inv, _site/); each such file gets a
/// warning. Returns the paths copied: the files a page may show. Files that are unsafe or
/// missing are fileFindings()' to report.
std::unordered_set<std::string> publishAssets(DocSet const& set, std::vector<std::string> const& pagePaths,
                                              AssetFolder const& assets, OutputFolder& out, std::string_view prefix,
                                              PageErrors& warnings);

}  // namespace refpage
