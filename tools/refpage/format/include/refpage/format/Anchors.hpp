// The ids of one page, decided once from the page alone: every section heading, every
// heading inside the description, every table row, every example and every entity
// beyond the first. The site writes them as `id`s and anchor links; the index, search
// and docset point members at them. No rendering is needed to know them.
#pragma once

#include <cstddef>
#include <reference/property/RefItem.hpp>
#include <string>
#include <string_view>
#include <vector>

namespace refpage {

class ParsedDescription;

/// The sections of a page, in the order a page shows them.
enum class PageSection : std::size_t { Description, Syntax, Inputs, Outputs, Properties, Parameters, Examples, SeeAlso };

struct Anchor {
    enum class Kind { Section, Heading, Entity, Input, Output, Parameter, ClassProperty, Example };
    Kind kind = Kind::Section;
    /// Which one: Section {PageSection, group}; Heading {n-th heading of the description};
    /// Entity {e}; Input {group, input}; Output {i}; Parameter {i}; ClassProperty {group, property}; Example {i}.
    std::vector<std::size_t> indexPath;
    std::string id;    ///< unique on the page; never empty, no whitespace or control character
    std::string name;  ///< what a reader sees: the section's title, the row's or entity's name, the example's title

    friend bool operator==(Anchor const&, Anchor const&) = default;
};

/// Ids the page layout uses itself; no anchor takes one.
inline constexpr std::string_view reservedPageIds[] = {"main", "content", "toc", "sidebar", "search-box",
                                                       "search-results", "top", "nav-toggle"};

/// Every anchor of `page`, in the order the page shows them. A row or example whose own
/// link leads into its page ("#x", or the page's own Href with "#x") takes that fragment
/// as its id, the first to claim it; every other anchor gets an id derived from its kind
/// and name ("input-axis", "property-T", "example-2", "see-also"), made unique with "-2",
/// "-3", ... An example without a title is named "Example N" (1-based).
std::vector<Anchor> anchorsOf(reference::property::RefItem const& page);

/// The same, with the page's description already parsed (its headings are anchors too).
std::vector<Anchor> anchorsOf(reference::property::RefItem const& page, ParsedDescription const& description);

/// The title a section of `page` shows: a group's own title, else "Syntax", "Inputs", ...
std::string sectionTitle(reference::property::RefItem const& page, PageSection section, std::size_t group);

/// "Example N" for the example at `index` without a title; its title otherwise.
std::string exampleTitle(reference::property::RefItem const& page, std::size_t index);

/// `text` as an id: ASCII letters, digits, '-', '_', '.' and non-ASCII characters kept,
/// runs of anything else one '-', no '-' at either end; `fallback` when nothing is left.
std::string idFromText(std::string_view text, std::string_view fallback);

}  // namespace refpage
