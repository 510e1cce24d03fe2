// The check of a page's links into other doc sets: each link under the base URL of
// a known inventory (ExternalInventories) must name something that inventory lists.
#pragma once

#include <reference/property/RefItem.hpp>
#include <refpage/format/PageError.hpp>
#include <refpage/interchange/ExternalInventories.hpp>
#include <string_view>

namespace refpage {

/// One finding per link of `page` that an inventory judges Missing, in the order of the
/// page's keys, each naming `source`, the link's JSON pointer and the inventory. The links
/// are those the doc set's check follows: see-also and example Url; Href of inputs,
/// outputs, parameters and class properties. Safe to call from several threads at once.
PageErrors externalLinkFindings(reference::property::RefItem const& page, std::string_view source,
                                ExternalInventories const& inventories);

}  // namespace refpage
