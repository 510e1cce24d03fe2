// The files a page references besides other pages: its thumbnail and the images of its
// description. Paths are relative to the doc set's root, as every link in a page is.
#pragma once

#include <reference/property/RefItem.hpp>
#include <refpage/support/TextPosition.hpp>
#include <string>
#include <vector>

namespace refpage {

class ParsedDescription;

struct PageFile {
    std::string path;      ///< as written (UTF-8)
    bool safe = false;     ///< a safe relative path (safeRelativePath): one the site can copy and link
    std::string pointer;   ///< "/AppThumbnail/FileRef" or "/Description"
    TextPosition position; ///< in the description (line, byte column); {1, 1} for the thumbnail
};

/// Every file `page` references, in page order: the thumbnail's FileRef when not empty,
/// then each image of the description whose target is relative (no scheme, not "/" or
/// "//"; a fragment or query makes it unsafe). External images are not listed.
std::vector<PageFile> filesOf(reference::property::RefItem const& page);

/// The same, with the page's description already parsed.
std::vector<PageFile> filesOf(reference::property::RefItem const& page, ParsedDescription const& description);

}  // namespace refpage
