// The lookup summary of a page and the person-readable rendering of a page,
// both from the native getters.
#pragma once

#include <reference/property/RefItem.hpp>
#include <reference/property/RefItemLookup.hpp>
#include <string>

namespace refpage {

/// Name, type and function type of the first entity, purpose, deprecated when the
/// status is not Current, link = Href.
reference::property::RefItemLookup makeLookup(reference::property::RefItem const& page);

/// The page as text for a person: enumeration values by display text.
std::string renderPage(reference::property::RefItem const& page);

}  // namespace refpage
