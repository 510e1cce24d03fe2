// The one ranking of lookups, shared by `find` (as SQL over the lookup index) and
// the site's search script (as data it reads): hits rank by tier, then within the
// full-text tier by BM25, then current before deprecated, then shorter names (in
// characters) first, then by name (UTF-8 bytes, that is code points), then by index order.
#pragma once

#include <array>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <vector>

namespace refpage {

/// One tier of the ranking; an entry ranks in the first tier it matches.
struct RankTier {
    std::string_view key;          ///< what the search script calls it
    std::string_view description;  ///< for people
    /// A SELECT of (id, tier, score) over the index: ?1 is the query text, ?2 the full-text query,
    /// {tier} stands for the tier's index and {weights} for the BM25 column weights.
    std::string_view select;
};

/// The tiers, best first.
inline constexpr std::array<RankTier, 4> rankTiers{{
    {"exactName", "the name is the query", "SELECT id, {tier}, 0.0 FROM lookup WHERE name = ?1"},
    {"lastComponent", "the name's last dot-separated component is the query",
     "SELECT id, {tier}, 0.0 FROM lookup WHERE last = ?1"},
    {"namePrefix", "the name starts with the query", "SELECT id, {tier}, 0.0 FROM lookup WHERE substr(name, 1, length(?1)) = ?1"},
    {"fullText", "every word of the query is a word of the name or the purpose; better BM25 first",
     "SELECT rowid, {tier}, bm25(lookup_text, {weights}) FROM lookup_text WHERE lookup_text MATCH ?2"},
}};
/// Index of the full-text tier in rankTiers; it takes part only when the query has words.
inline constexpr std::size_t fullTextTier = 3;

/// BM25 as the full-text index computes it: score = -sum over query words w of
/// idf(w) * f*(k1+1) / (f + k1*(1 - b + b*D/avgdl)), idf(w) = max(1e-6, ln((N - n(w) + 0.5) / (n(w) + 0.5))),
/// f the weighted count of w in the entry, D the entry's word count, avgdl the mean D, N entries,
/// n(w) the entries holding w. Lower is better.
struct Bm25 {
    static constexpr double k1 = 1.2;
    static constexpr double b = 0.75;
    static constexpr std::array<double, 2> weights{1.0, 1.0};  ///< name, purpose
};

/// The full-text index's tokenizer, as its CREATE statement names it: words are runs of
/// letters, digits and private-use characters; case folded; diacritics kept.
inline constexpr std::string_view fullTextTokenizer = "unicode61 remove_diacritics 0";

/// The words of `query` as the tokenizer splits them (case as given); bytes of invalid UTF-8 separate words.
std::vector<std::string> queryWords(std::string_view query);

/// The full-text query for `words`: each word quoted as its own phrase, all required; a word
/// that repeats an earlier one (ignoring ASCII case, as the tokenizer does) is left out, so a
/// query's cost grows with its distinct words only.
std::string fullTextQuery(std::vector<std::string> const& words);

/// The ranking statement: (id, tier, score) of every match, best first; ?3 is the limit (-1: none).
/// Without the full-text tier when `withFullText` is false.
std::string rankingSql(bool withFullText);

/// The tiers and BM25 parameters as the search script reads them.
nlohmann::json rankingDescription();

}  // namespace refpage
