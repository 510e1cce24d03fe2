// The lookup record of a page: what an index or a search lists of it.
#pragma once

#include <reference/property/RefItem.hpp>
#include <reference/property/RefItemLookup.hpp>

namespace refpage {

/// Name, type and function type of the first entity, purpose, deprecated when the
/// status is not Current, link = Href.
reference::property::RefItemLookup makeLookup(reference::property::RefItem const& page);

}  // namespace refpage
