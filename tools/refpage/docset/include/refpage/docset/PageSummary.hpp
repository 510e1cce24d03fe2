// What the doc set keeps of one page once the page itself is released: enough for the
// cross-page checks, the lookup index, the site's index page, search and the docset's
// index. A summary is made on the thread that loaded its page; texts are UTF-8.
#pragma once

#include <reference/property/FunctionType.hpp>
#include <reference/property/RefEntityType.hpp>
#include <reference/property/RefItem.hpp>
#include <string>
#include <vector>

namespace refpage {

/// One entity a page documents.
struct EntitySummary {
    std::string name;
    reference::property::RefEntityType::Value type = reference::property::RefEntityType::Unknown;
    reference::property::FunctionType::Value functionType = reference::property::FunctionType::getDefaultValue();

    bool operator==(EntitySummary const&) const = default;
};

/// One link written in a page.
struct LinkSummary {
    std::string pointer;  ///< JSON pointer of the link's value, as "/SeeAlso/0/Url"
    std::string text;     ///< the link as written

    bool operator==(LinkSummary const&) const = default;
};

struct PageSummary {
    std::string source;                    ///< the file as named or found; diagnostics name it
    std::string href;                      ///< as written, fragment included
    std::string title;                     ///< pageTitle()
    std::string package;                   ///< PackageName
    std::string purpose;                   ///< Purpose
    bool deprecated = false;               ///< the status is not Current
    std::vector<EntitySummary> entities;   ///< in page order
    std::vector<LinkSummary> links;        ///< every link but empty ones, in the order of the page's keys

    bool operator==(PageSummary const&) const = default;
};

/// The summary of `page`, read from `source`.
PageSummary summarize(std::string source, reference::property::RefItem const& page);

}  // namespace refpage
