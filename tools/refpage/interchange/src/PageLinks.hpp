// The links a page holds, with where each stands: the list the doc set's check
// follows (docset/src/DocSet.cpp keeps the same list for links inside the set).
#pragma once

#include <reference/property/RefItem.hpp>
#include <string>
#include <vector>

namespace refpage {

struct PageLink {
    std::string pointer;         ///< JSON pointer of the link's value, as "/SeeAlso/2/Url"
    std::u16string const* text;  ///< the link as written; borrowed from the page
};

/// Every link of `page`, in the order of the page's keys: the Href of inputs (by group),
/// outputs and class properties (by group), see-also and example Url, the Href of parameters.
std::vector<PageLink> pageLinks(reference::property::RefItem const& page);

}  // namespace refpage
