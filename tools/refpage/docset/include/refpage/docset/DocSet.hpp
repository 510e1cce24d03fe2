// A doc set: pages loaded together, the links between them, and what is wrong
// with the set as a whole (links that lead nowhere, pages sharing one Href, one
// entity name documented twice).
#pragma once

#include <cstddef>
#include <reference/property/HostArray.hpp>
#include <reference/property/RefItem.hpp>
#include <refpage/format/PageError.hpp>
#include <refpage/format/ParallelLoad.hpp>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace refpage {

/// One page of a doc set, loaded through the host.
struct DocSetPage {
    std::string source;                        ///< the file as named or found; diagnostics name it
    reference::property::HostArrayPtr object;  ///< the RefItem host object; keeps `page` alive
    reference::property::RefItem const* page;  ///< the native page, borrowed from `object`; never null
};

/// Where a link written in a page leads. Links are relative to the doc set's root
/// ("reference/generated/numpy.argsort.html#x" on any page), absolute (a scheme, "//"
/// or "/"), or a fragment of the page that holds them ("#numpy.sort-axis").
struct LinkTarget {
    enum class Kind {
        Empty,       ///< no link at all
        External,    ///< absolute; never fetched, never checked
        SamePage,    ///< only a fragment: the page holding the link
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
    explicit DocSet(std::vector<DocSetPage> pages);

    std::vector<DocSetPage> const& pages() const noexcept { return pages_; }

    /// Where `link` (UTF-8) leads. A relative link names a page by its Href, fragment ignored;
    /// with several pages sharing that Href it is the first.
    LinkTarget resolve(std::string_view link) const;

    /// Every cross-page finding: relative links (see-also and example Url; Href of inputs,
    /// outputs, parameters and class properties) that resolve to no page, pages sharing
    /// one Href, and entity names documented by several pages, or twice with one entity
    /// type on one page (a class and its constructor share a name by design).
    DocSetReport check() const;

private:
    std::vector<DocSetPage> pages_;
    std::unordered_map<std::string, std::size_t> byHref_;  ///< UTF-8 Href without fragment -> first page with it
};

/// The pages that loaded, in order, for a DocSet; results that failed are skipped.
std::vector<DocSetPage> docSetPages(std::span<PageInput const> sources, std::span<LoadResult const> results);

}  // namespace refpage
