// The files the pages of a doc set reference (thumbnails, images in descriptions),
// checked against the assets folder they are published from.
#pragma once

#include <refpage/docset/DocSet.hpp>
#include <refpage/format/PageError.hpp>
#include <refpage/support/AssetFolder.hpp>

namespace refpage {

/// One warning per referenced file that cannot be published: a path that is not a safe
/// relative path, or one that names no regular file in `assets`; each names the page's
/// file, the JSON pointer and, inside a description, the place there. In page order; the
/// pages are looked at on up to `jobs` threads.
PageErrors fileFindings(DocSet const& set, AssetFolder const& assets, unsigned jobs = 1);

/// "the folder of the pages": the first name given when it is a folder, else the folder of
/// the first page file named ("." for a bare name or none).
std::filesystem::path defaultAssetFolder(std::vector<std::string> const& names);

}  // namespace refpage
