// What a page is called wherever it is listed or shown.
#pragma once

#include <reference/property/RefItem.hpp>
#include <string>

namespace refpage {

/// The page's title, in UTF-8: its first entity's name, else its Href, else "Untitled page".
std::string pageTitle(reference::property::RefItem const& page);

}  // namespace refpage
