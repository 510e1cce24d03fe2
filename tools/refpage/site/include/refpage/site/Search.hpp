// The site's search data: written as many small scripts, so that a page loads none of
// it until the reader searches, and then only the few files the query needs. Ranking
// stays `refpage find`'s (SearchRanking.hpp): search-rank.js ranks what it loads with the
// same tiers, the same BM25 over the whole set's statistics, and the same order.
//
// Files, under the site's `_site/search/`, each a script calling
// `refpageSearchShard(name, data)` so that they load from file:// by <script src>:
//   meta.js          entry count, token count, the ranking, which trie nodes are split and which have files
//   n-<hex>.js       names by prefix: [id, name, order, then the entry as e-<n>.js has it] under one trie node
//   l-<hex>.js       names by last component, the same way
//   w-<hex>.js       words by prefix: {word: [id, name hits, purpose hits, entry words, order, id, ...]};
//                    a word in more than searchLongPostings entries is instead {n: entries holding it,
//                    bits: base64 of a bit per entry, mode: [name hits, purpose hits] most entries have,
//                    except: [id, name hits, purpose hits, ...] for the others, top: the searchTopPostings
//                    postings a one-word query ranks first, full: the number of its f-<n>.js}
//   f-<n>.js         the whole postings of one such word, read only by a query of several such words
//   e-<n>.js         entries n*64 .. n*64+63: [name, type, entityType, functionType, purpose, deprecated, path]
// A trie node holds every key under its prefix (code points, ASCII case folded); past
// searchShardLimit keys it is split into one node per next character, and keeps only the
// keys equal to its prefix, plus (for names) the searchPrefixCap best-ordered names under
// it, so that a prefix query of any length reads one node. `order` is an entry's place in
// the query-independent part of the ranking (current first, shorter names, names by code
// point, index order).
#pragma once

#include <cstddef>
#include <functional>
#include <reference/property/FunctionType.hpp>
#include <reference/property/RefEntityType.hpp>
#include <span>
#include <string>
#include <string_view>

namespace refpage {

/// One thing the search finds: an entity of a page, or a member (a property, an entity beyond the first).
struct SearchEntry {
    std::string name;
    reference::property::RefEntityType::Value entityType = reference::property::RefEntityType::Unknown;
    reference::property::FunctionType::Value functionType = reference::property::FunctionType::getDefaultValue();
    std::string purpose;
    bool deprecated = false;
    std::string path;  ///< relative to the site's root, percent-encoded, may end in "#anchor"
};

/// Writes one file of the site: `relativePath` under the site's root ("_site/search/meta.js").
using SiteFileSink = std::function<void(std::string_view relativePath, std::string_view bytes)>;

/// Keys a trie node holds before it is split.
inline constexpr std::size_t searchShardLimit = 1000;
/// Names a split name node keeps for prefix queries that end at it: results beyond this many
/// in the prefix tier are not shown for such short queries.
inline constexpr std::size_t searchPrefixCap = 100;
/// Postings past which a word is written as a bit set with its exceptions (see above), so that
/// a query need not load a posting for every entry of the set.
inline constexpr std::size_t searchLongPostings = 2000;
/// Postings of such a word kept in rank order for a one-word query: results beyond this many
/// are not shown for a query of one such word alone.
inline constexpr std::size_t searchTopPostings = 100;
/// Entries per entry block file.
inline constexpr std::size_t searchBlockSize = 64;

/// The folder of the search files, under the site's root.
inline constexpr std::string_view searchFolder = "_site/search/";

/// Writes every search file of `entries` (in index order: an entry's id is its position) through `write`.
/// Same entries, same files and bytes.
void writeSearchFiles(std::span<SearchEntry const> entries, SiteFileSink const& write);

}  // namespace refpage
