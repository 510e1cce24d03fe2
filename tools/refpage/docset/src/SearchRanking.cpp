#include <fmt/format.h>
#include <fmt/ranges.h>
#include <utf8proc.h>

#include <refpage/docset/SearchRanking.hpp>
#include <refpage/support/Text.hpp>
#include <unordered_set>

namespace refpage {

namespace {

/// What the tokenizer keeps in words: letters, numbers and private-use characters.
bool isWordCharacter(utf8proc_int32_t c) {
    switch (utf8proc_category(c)) {
        case UTF8PROC_CATEGORY_LU:
        case UTF8PROC_CATEGORY_LL:
        case UTF8PROC_CATEGORY_LT:
        case UTF8PROC_CATEGORY_LM:
        case UTF8PROC_CATEGORY_LO:
        case UTF8PROC_CATEGORY_ND:
        case UTF8PROC_CATEGORY_NL:
        case UTF8PROC_CATEGORY_NO:
        case UTF8PROC_CATEGORY_CO:
            return true;
        default:
            return false;
    }
}

}  // namespace

std::vector<std::string> queryWords(std::string_view query) {
    std::vector<std::string> words;
    std::string word;
    auto const* bytes = reinterpret_cast<utf8proc_uint8_t const*>(query.data());
    std::size_t at = 0;
    while (at < query.size()) {
        utf8proc_int32_t c = -1;
        utf8proc_ssize_t const length =
            utf8proc_iterate(bytes + at, static_cast<utf8proc_ssize_t>(query.size() - at), &c);
        std::size_t const taken = length > 0 ? static_cast<std::size_t>(length) : 1;
        if (length > 0 && isWordCharacter(c)) {
            word.append(query.substr(at, taken));
        } else if (!word.empty()) {
            words.push_back(std::move(word));
            word.clear();
        }
        at += taken;
    }
    if (!word.empty()) words.push_back(std::move(word));
    return words;
}

std::string fullTextQuery(std::vector<std::string> const& words) {
    std::string query;
    std::unordered_set<std::string> seen;  // a repeated word adds nothing that all words must match
    for (auto const& word : words) {
        if (!seen.insert(asciiLowered(word)).second) continue;
        if (!query.empty()) query += ' ';
        query += fmt::format("\"{}\"", word);  // words hold no quote: quotes separate words
    }
    return query;
}

namespace {

void replaceAll(std::string& text, std::string_view placeholder, std::string_view value) {
    for (auto at = text.find(placeholder); at != std::string::npos; at = text.find(placeholder, at + value.size()))
        text.replace(at, placeholder.size(), value);
}

}  // namespace

std::string rankingSql(bool withFullText) {
    std::string tiers;
    for (std::size_t i = 0; i < rankTiers.size(); ++i) {
        if (i == fullTextTier && !withFullText) continue;
        std::string select(rankTiers[i].select);
        replaceAll(select, "{tier}", std::to_string(i));
        replaceAll(select, "{weights}", fmt::format("{}", fmt::join(Bm25::weights, ", ")));
        if (!tiers.empty()) tiers += "\n  UNION ALL ";
        tiers += select;
    }
    // MIN(tier) picks each entry's best tier; the bare score comes from that same row.
    return fmt::format(
        "WITH hits(id, tier, score) AS (\n  {}\n)\n"
        "SELECT l.id, l.name, l.entity_type, l.function_type, l.purpose, l.deprecated, l.href, l.page_file, "
        "m.tier, m.score\n"
        "FROM (SELECT id, MIN(tier) AS tier, score FROM hits GROUP BY id) AS m JOIN lookup AS l ON l.id = m.id\n"
        "ORDER BY m.tier, m.score, l.deprecated, length(l.name), l.name, l.id\nLIMIT ?3",
        tiers);
}

nlohmann::json rankingDescription() {
    nlohmann::json tiers = nlohmann::json::array();
    for (auto const& tier : rankTiers) tiers.push_back({{"key", tier.key}, {"description", tier.description}});
    return {{"tiers", tiers},
            {"bm25", {{"k1", Bm25::k1}, {"b", Bm25::b}, {"weights", Bm25::weights}}},
            {"tokenizer", fullTextTokenizer},
            {"order", {"tier", "score", "deprecated", "nameLength", "name", "index"}}};
}

}  // namespace refpage
