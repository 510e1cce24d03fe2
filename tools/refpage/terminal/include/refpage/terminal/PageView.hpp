// A page as text for a person to read on a terminal, from the native getters.
#pragma once

#include <reference/property/RefItem.hpp>
#include <string>

namespace refpage {

/// The page as text for a person: enumeration values by display text; page text made displayable.
std::string renderPage(reference::property::RefItem const& page);

}  // namespace refpage
