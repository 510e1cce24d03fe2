// The check of a page's links into other doc sets: each link under the base URL of
// a known inventory (ExternalInventories) must name something that inventory lists.
#pragma once

#include <refpage/docset/PageSummary.hpp>
#include <refpage/format/PageError.hpp>
#include <refpage/interchange/ExternalInventories.hpp>
#include <string_view>

namespace refpage {

/// One finding per link of `page` that an inventory judges Missing, in the order of the
/// page's keys, each naming the page's file, the link's JSON pointer and the inventory. The
/// links are those the doc set's check follows (PageSummary::links). Safe to call from
/// several threads at once.
PageErrors externalLinkFindings(PageSummary const& page, ExternalInventories const& inventories);

}  // namespace refpage
