// What the doc set keeps of one page once the page itself is released: enough for the
// cross-page checks, the lookup index, the site's index page, search and the docset's
// index. A summary is made on the thread that loaded its page; texts are UTF-8.
#pragma once

#include <reference/property/FunctionType.hpp>
#include <reference/property/RefEntityType.hpp>
#include <reference/property/RefItem.hpp>
#include <cstddef>
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

/// One thing a page lists in the index, search, the docset and inventories: the page's
/// first entity, every other entity but a class's constructor, and every class property.
struct EntrySummary {
    std::string name;    ///< a class property's is "<first entity's name>.<property's name>"
    reference::property::RefEntityType::Value type = reference::property::RefEntityType::Unknown;
    reference::property::FunctionType::Value functionType = reference::property::FunctionType::getDefaultValue();
    std::string anchor;  ///< its id on the page (format/Anchors.hpp); empty for the page itself
    std::string purpose;  ///< a class property's own purpose; empty: the page's

    bool operator==(EntrySummary const&) const = default;
};

/// One link written in a page, or one file it references (a thumbnail, a description's image).
struct LinkSummary {
    std::string pointer;     ///< JSON pointer of the value, as "/SeeAlso/0/Url" or "/Description"
    std::string text;        ///< the link or path as written
    std::size_t line = 0;    ///< inside a description: its 1-based line there; 0 otherwise
    std::size_t column = 0;  ///< inside a description: its byte column there

    /// " (line L, column C of the description)" inside a description, else "": for messages.
    std::string where() const;

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
    std::vector<EntrySummary> entries;     ///< what the page lists, in page order
    std::vector<LinkSummary> links;        ///< every link but empty ones, in the order of the page's keys
    std::vector<LinkSummary> files;        ///< every file it references (format/PageFiles.hpp), in page order

    bool operator==(PageSummary const&) const = default;
};

/// Whether a summary keeps the page's links: only the set's checks read them, and a set loaded
/// for its outputs (index, site, docset, inventory) is a fifth smaller without them.
enum class SummaryLinks { Kept, Left };

/// The summary of `page`, read from `source`; with SummaryLinks::Left, `links` stays empty.
PageSummary summarize(std::string source, reference::property::RefItem const& page,
                      SummaryLinks links = SummaryLinks::Kept);

}  // namespace refpage
