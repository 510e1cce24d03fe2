// A doc set: the summaries of pages loaded together, the links between them, and
// what is wrong with the set as a whole (links that lead nowhere, pages sharing one
// Href, one entity name documented twice).
#pragma once

#include <cstddef>
#include <refpage/docset/PageSummary.hpp>
#include <refpage/format/PageError.hpp>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace refpage {

/// Where a link written in a page leads. Links are relative to the doc set's root
/// ("reference/generated/numpy.argsort.html#x" on any page), absolute (a scheme, "//"
/// or "/"), or lead into the page that holds them ("#numpy.sort-axis", "./#x", "./").
struct LinkTarget {
    enum class Kind {
        Empty,       ///< no link at all
        External,    ///< absolute; never fetched, never checked
        SamePage,    ///< a fragment of, or the whole of, the page holding the link
        Page,        ///< a page of the set
        Unresolved,  ///< relative, but no page of the set has that Href
    } kind = Kind::Empty;
    std::size_t page = 0;  ///< index into DocSet::pages() when kind == Page
    std::string fragment;  ///< the text after '#', without it; may be empty. Never checked: pages list no anchors
};

/// The kinds of cross-page finding, in the order the summary counts them.
enum class DocSetIssue {
    UnresolvedLink,  ///< a relative link that leads to no page of the set
    SharedHref,      ///< a page whose Href an earlier page already has
    DuplicateName,   ///< an entity name an earlier page (or an earlier entity of the same type) documents
};
inline constexpr std::size_t docSetIssueCount = 3;

/// "unresolved link", "shared Href", "duplicate name"; with `count` != 1 the plural.
std::string issueLabel(DocSetIssue issue, std::size_t count);

struct DocSetFinding {
    DocSetIssue issue;
    PageError where;  ///< the page's file, the JSON pointer of the link, Href or entity name, and the message
};

struct DocSetReport {
    std::vector<DocSetFinding> findings;  ///< by page in set order; within a page in the order of its keys

    std::size_t count(DocSetIssue issue) const noexcept;
};

class DocSet {
public:
    /// Takes the pages in the order given; that order decides which of two pages is "earlier".
    explicit DocSet(std::vector<PageSummary> pages);

    std::vector<PageSummary> const& pages() const noexcept { return pages_; }

    /// Where `link` leads. A relative link names a page by its Href, fragment ignored;
    /// with several pages sharing that Href it is the first.
    LinkTarget resolve(std::string_view link) const;

    /// Every cross-page finding: links that resolve to no page, pages sharing one Href, and
    /// entity names documented by several pages, or twice with one entity type on one page (a
    /// class and its constructor share a name by design). Time is linear in the set's size; the
    /// work of each page runs on up to `jobs` threads (0: one per core), the report the same on any.
    DocSetReport check(unsigned jobs = 1) const;

private:
    std::vector<PageSummary> pages_;
    std::unordered_map<std::string, std::size_t> byHref_;  ///< Href without fragment -> first page with it
};

}  // namespace refpage
