// The lookup index of a doc set: one lookup record per entity of every page, in
// an SQLite database that `find` queries and that serves as a docset's search
// index as it is (its searchIndex table).
//
// Schema (user_version 1):
//   lookup(id INTEGER PRIMARY KEY, name, last, entity_type, function_type, purpose, deprecated, href, page_file)
//     one row per entity; `last` is the name after its last '.'; ids in page order, then entity order
//   lookup_text: FTS5 over (name, purpose), rowid = lookup.id, tokenizer fullTextTokenizer
//   searchIndex(id INTEGER PRIMARY KEY, name TEXT, type TEXT, path TEXT) with
//     UNIQUE INDEX anchor ON searchIndex (name, type, path): type from dashEntryType, path = href
#pragma once

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <memory>
#include <reference/property/FunctionType.hpp>
#include <reference/property/RefEntityType.hpp>
#include <reference/property/RefItemLookup.hpp>
#include <refpage/docset/DocSet.hpp>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace refpage {

/// What a database, a file or SQLite itself refused; the message names the file.
class LookupIndexError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// One entity of one page.
struct LookupEntry {
    reference::property::RefItemLookup lookup;  ///< the entity's lookup record
    std::size_t page = 0;                       ///< index into the DocSet's pages
    std::string source;                         ///< the page's file
};

/// One lookup record per entity of every page, in page order then entity order: the entity's
/// name, type and function type, the page's purpose, deprecated when the page's status is not
/// Current, and as its link the page's Href, or with `links` the page's entry there (the site
/// gives each page's path). A page without entities has no entry.
std::vector<LookupEntry> lookupEntries(DocSet const& set, std::span<std::string const> links = {});

/// Where an entry leads from its page's link: the link itself for the page's own entry (no
/// anchor), else the link without its fragment, then "#" and the anchor percent-encoded.
std::string entryLink(std::string_view pageLink, std::string_view anchor);

/// The docset entry type of an entity type, from one table:
///   Function, C, Cpp -> Function; Class; Method; Constructor; Property, Properties -> Property;
///   Object, SysObj -> Object; Package; Settings -> Setting; Keyword; Block, ReportGen,
///   CorvaneBlock, Tessark -> Component; ModelCheck, RuntimeCheck -> Test; QuillpadTask,
///   ModelGuideline -> Guide; CorvaneLanguage -> Statement; ConfigParam -> Parameter;
///   AnalysisOpt -> Option; App -> Service; Tool -> Command; Scene -> Sample;
///   Unknown and numbers that name no member -> Entry.
std::string_view dashEntryType(reference::property::RefEntityType::Value type) noexcept;

/// Writes the index of `entries` to `path` atomically: a new file "PATH.tmp-XXXXXX" beside it,
/// one transaction, then a rename over `path`. On failure `path` is untouched and the new file removed.
void writeLookupIndex(std::filesystem::path const& path, std::span<LookupEntry const> entries);

/// One ranked match of a query. Texts are UTF-8.
struct LookupHit {
    std::string name;
    reference::property::RefEntityType::Value type = reference::property::RefEntityType::Unknown;
    reference::property::FunctionType::Value functionType = reference::property::FunctionType::getDefaultValue();
    std::string purpose;
    bool deprecated = false;
    std::string href;
    std::string pageFile;
    std::string_view tier;  ///< the key of the tier it ranked in (static storage)
    double score = 0;       ///< BM25 in the full-text tier (lower is better), else 0
};

/// How long opening an index file, or one query of it, may take before it is given up with an
/// error: a crafted file cannot make `find --index` run longer. A real index is far within it:
/// a query that scans 300,000 entries takes a fraction of a second.
inline constexpr std::chrono::milliseconds lookupQueryTimeLimit{10'000};

/// An open lookup index. Not safe to share between threads.
class LookupIndex {
public:
    /// Opens an index file read-only, reading only its schema table and its own tables: the
    /// tables lookup, lookup_text (FTS5) and searchIndex with their columns, no view, no trigger,
    /// user_version 1. Throws LookupIndexError for a missing file, one that is no such index,
    /// or one that takes longer than `timeLimit`; messages never quote the file's contents.
    /// Every later query is bounded by `timeLimit` too (LookupIndexError past it).
    static LookupIndex open(std::filesystem::path const& path,
                            std::chrono::milliseconds timeLimit = lookupQueryTimeLimit);
    /// The same index, built in memory.
    static LookupIndex inMemory(std::span<LookupEntry const> entries);

    LookupIndex(LookupIndex&&) noexcept;
    LookupIndex& operator=(LookupIndex&&) noexcept;
    ~LookupIndex();

    /// Every entry `query` matches, ranked (SearchRanking.hpp); at most `limit` of them, 0: all.
    /// The query is text, never query syntax. An empty query matches nothing.
    std::vector<LookupHit> find(std::string_view query, std::size_t limit = 0) const;

    /// The number of entries.
    std::size_t size() const;

private:
    struct Impl;
    explicit LookupIndex(std::unique_ptr<Impl> impl);
    std::vector<LookupHit> findHits(std::string_view query, std::size_t limit) const;
    std::unique_ptr<Impl> impl_;
};

}  // namespace refpage
