#include <fmt/format.h>
#include <utf8proc.h>

#include <algorithm>
#include <deque>
#include <map>
#include <nlohmann/json.hpp>
#include <numeric>
#include <refpage/docset/LookupIndex.hpp>
#include <refpage/docset/SearchRanking.hpp>
#include <refpage/site/Search.hpp>
#include <set>
#include <span>
#include <unordered_map>
#include <utf8.h>

namespace refpage {

using reference::property::FunctionType;
using reference::property::RefEntityType;

namespace {

using Json = nlohmann::json;

/// A word as the full-text index holds it: case folded code point by code point.
std::string folded(std::string_view word) {
    std::string out;
    auto const* bytes = reinterpret_cast<utf8proc_uint8_t const*>(word.data());
    for (std::size_t at = 0; at < word.size();) {
        utf8proc_int32_t c = -1;
        auto const length = utf8proc_iterate(bytes + at, static_cast<utf8proc_ssize_t>(word.size() - at), &c);
        if (length <= 0) {
            ++at;
            continue;
        }
        utf8proc_uint8_t encoded[4];
        auto const size = utf8proc_encode_char(utf8proc_tolower(c), encoded);
        out.append(reinterpret_cast<char const*>(encoded), static_cast<std::size_t>(size));
        at += static_cast<std::size_t>(length);
    }
    return out;
}

std::vector<std::string> wordsOf(std::string_view text) {
    std::vector<std::string> words = queryWords(text);
    for (auto& word : words) word = folded(word);
    return words;
}

/// Code points of `text` with ASCII A-Z lowered: trie keys, as search-rank.js computes them.
std::u32string keyOf(std::string_view text) {
    std::u32string key;
    try {
        utf8::utf8to32(text.begin(), text.end(), std::back_inserter(key));
    } catch (utf8::exception const&) {
        key.clear();
        std::string const valid = utf8::replace_invalid(std::string(text));
        utf8::utf8to32(valid.begin(), valid.end(), std::back_inserter(key));
    }
    for (auto& c : key)
        if (c >= U'A' && c <= U'Z') c = c - U'A' + U'a';
    return key;
}

std::string hexOf(std::u32string const& key) {
    std::string bytes;
    utf8::utf32to8(key.begin(), key.end(), std::back_inserter(bytes));
    std::string hex;
    for (unsigned char c : bytes) hex += fmt::format("{:02x}", c);
    return hex;
}

std::string shardScript(std::string const& name, Json const& data) {
    return fmt::format("refpageSearchShard({},{});\n", Json(name).dump(),
                       data.dump(-1, ' ', false, Json::error_handler_t::replace));
}

/// A trie of keys with items, split where a node weighs more than searchShardLimit.
template <class Item>
struct Trie {
    std::map<std::u32string, std::vector<Item>> nodes;  ///< node prefix -> its items
    std::set<std::u32string> split;                     ///< nodes split into children
};

/// An item under its key, weighing what it costs the node that holds it.
template <class Item>
struct Keyed {
    std::u32string key;
    Item item;
    std::size_t weight = 1;
};

/// Builds a trie over keyed items, without recursion: nodes wait in a queue. For a split
/// node, `keep(items of the whole node)` chooses what it keeps besides exact keys.
template <class Item, class Keep>
Trie<Item> buildTrie(std::vector<Keyed<Item>> keyed, Keep const& keep) {
    using Items = std::vector<Keyed<Item>>;
    Trie<Item> trie;
    std::deque<std::pair<std::u32string, Items>> queue;
    std::map<std::u32string, Items> first;
    for (auto& entry : keyed)
        if (!entry.key.empty()) first[entry.key.substr(0, 1)].push_back(std::move(entry));
    keyed = {};
    for (auto& node : first) queue.emplace_back(node.first, std::move(node.second));
    first.clear();
    while (!queue.empty()) {
        std::u32string const prefix = std::move(queue.front().first);
        Items items = std::move(queue.front().second);
        queue.pop_front();
        bool const longer =
            std::any_of(items.begin(), items.end(), [&](auto const& e) { return e.key.size() > prefix.size(); });
        std::size_t weight = 0;
        for (auto const& entry : items) weight += entry.weight;
        auto& node = trie.nodes[prefix];
        if (weight <= searchShardLimit || !longer) {
            for (auto& entry : items) node.push_back(std::move(entry.item));
            continue;
        }
        trie.split.insert(prefix);
        node = keep(items);
        std::map<std::u32string, Items> children;
        for (auto& entry : items) {
            if (entry.key.size() == prefix.size()) node.push_back(entry.item);
            else children[entry.key.substr(0, prefix.size() + 1)].push_back(std::move(entry));
        }
        for (auto& child : children) queue.emplace_back(child.first, std::move(child.second));
    }
    return trie;
}

/// The hex keys of the nodes that have a file, space-separated (one string parses faster than
/// an array), so that the script asks for no missing file.
template <class Item>
std::string nodeKeys(Trie<Item> const& trie) {
    std::string keys;
    for (auto const& [key, items] : trie.nodes) {
        if (!keys.empty()) keys += ' ';
        keys += hexOf(key);
    }
    return keys;
}

template <class Item>
Json splitKeys(Trie<Item> const& trie) {
    Json keys = Json::array();
    for (auto const& key : trie.split) {
        std::string text;
        utf8::utf32to8(key.begin(), key.end(), std::back_inserter(text));
        keys.push_back(text);
    }
    return keys;
}

// Ids, orders and counts are 32-bit: a set holds far fewer entries, and a posting per word
// of every entry is the largest thing the search data keeps while it is written.
struct NameItem {
    std::uint32_t id;
    std::uint32_t order;
};

struct Posting {
    std::uint32_t id, nameHits, purposeHits, words, order;
};

std::string base64(std::string_view bytes) {
    static constexpr char digits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string out;
    out.reserve((bytes.size() + 2) / 3 * 4);
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
        std::uint32_t chunk = static_cast<unsigned char>(bytes[i]) << 16;
        if (i + 1 < bytes.size()) chunk |= static_cast<unsigned char>(bytes[i + 1]) << 8;
        if (i + 2 < bytes.size()) chunk |= static_cast<unsigned char>(bytes[i + 2]);
        out += digits[(chunk >> 18) & 63];
        out += digits[(chunk >> 12) & 63];
        out += i + 1 < bytes.size() ? digits[(chunk >> 6) & 63] : '=';
        out += i + 2 < bytes.size() ? digits[chunk & 63] : '=';
    }
    return out;
}

Json flat(std::span<Posting const> postings) {
    Json list = Json::array();
    for (auto const& p : postings)  // five numbers a posting: cheaper to parse than arrays
        for (std::uint32_t value : {p.id, p.nameHits, p.purposeHits, p.words, p.order}) list.push_back(value);
    return list;
}

/// A word held by many entries: membership as bits, the usual hits and the exceptions, and the
/// postings a one-word query ranks first, in the order search-rank.js ranks them.
Json longWord(std::span<Posting const> postings, std::size_t count, double averageLength, std::size_t full) {
    std::string bits((count + 7) / 8, '\0');
    std::map<std::pair<std::uint32_t, std::uint32_t>, std::size_t> pairs;
    for (auto const& p : postings) {
        bits[p.id / 8] = static_cast<char>(bits[p.id / 8] | (1 << (p.id % 8)));
        ++pairs[{p.nameHits, p.purposeHits}];
    }
    auto const mode = std::max_element(pairs.begin(), pairs.end(), [](auto const& a, auto const& b) {
                          return a.second < b.second;
                      })->first;
    Json except = Json::array();
    for (auto const& p : postings)
        if (std::pair(p.nameHits, p.purposeHits) != mode)
            for (std::uint32_t value : {p.id, p.nameHits, p.purposeHits}) except.push_back(value);
    // BM25's part for one entry, as search-rank.js computes it: the same operations in the same order.
    auto const part = [&](Posting const& p) {
        double const frequency = static_cast<double>(p.nameHits) * Bm25::weights[0] +
                                 static_cast<double>(p.purposeHits) * Bm25::weights[1];
        return (frequency * (Bm25::k1 + 1.0)) /
               (frequency + Bm25::k1 * (1 - Bm25::b + (Bm25::b * static_cast<double>(p.words)) / averageLength));
    };
    std::vector<Posting> top(postings.begin(), postings.end());
    std::sort(top.begin(), top.end(), [&](Posting const& a, Posting const& b) {
        double const x = part(a), y = part(b);
        return x != y ? x > y : a.order < b.order;
    });
    if (top.size() > searchTopPostings) top.resize(searchTopPostings);
    return {{"n", postings.size()}, {"bits", base64(bits)}, {"mode", {mode.first, mode.second}},
            {"except", std::move(except)}, {"top", flat(top)}, {"full", full}};
}

/// Every word of the entries' names and purposes, once each in byte order, with one posting
/// per entry holding it: a word's postings are one run, in entry order. Words are held once,
/// postings in one array: a set's vocabulary runs to hundreds of thousands of words.
struct WordPostings {
    std::vector<std::string> words;   ///< by rank: byte order
    std::vector<std::size_t> starts;  ///< postings of rank r: [starts[r], starts[r + 1])
    std::vector<Posting> postings;
    std::size_t tokens = 0;           ///< words of all entries, repeats included

    std::span<Posting const> postingsOf(std::uint32_t rank) const {
        return std::span(postings).subspan(starts[rank], starts[rank + 1] - starts[rank]);
    }
};

WordPostings gatherWords(std::span<SearchEntry const> entries, std::span<std::size_t const> order) {
    WordPostings gathered;
    std::unordered_map<std::string, std::uint32_t> ids;  // word -> id, in order of first use
    std::vector<std::uint32_t> idOf;                      // per posting, in entry order
    std::vector<Posting> byEntry;
    for (std::size_t i = 0; i < entries.size(); ++i) {
        auto const nameWords = wordsOf(entries[i].name);
        auto const purposeWords = wordsOf(entries[i].purpose);
        auto const words = static_cast<std::uint32_t>(nameWords.size() + purposeWords.size());
        gathered.tokens += words;
        std::map<std::string_view, std::pair<std::uint32_t, std::uint32_t>> hits;
        for (auto const& word : nameWords) ++hits[word].first;
        for (auto const& word : purposeWords) ++hits[word].second;
        for (auto const& [word, counts] : hits) {
            auto const id = ids.try_emplace(std::string(word), static_cast<std::uint32_t>(ids.size())).first->second;
            idOf.push_back(id);
            byEntry.push_back({static_cast<std::uint32_t>(i), counts.first, counts.second, words,
                               static_cast<std::uint32_t>(order[i])});
        }
    }
    std::vector<std::string> byId(ids.size());
    while (!ids.empty()) {
        auto node = ids.extract(ids.begin());
        byId[node.mapped()] = std::move(node.key());
    }
    std::vector<std::uint32_t> idsByRank(byId.size());
    std::iota(idsByRank.begin(), idsByRank.end(), std::uint32_t{0});
    std::sort(idsByRank.begin(), idsByRank.end(), [&](std::uint32_t a, std::uint32_t b) { return byId[a] < byId[b]; });
    std::vector<std::uint32_t> rankOf(byId.size());
    gathered.words.reserve(byId.size());
    for (std::uint32_t rank = 0; rank < idsByRank.size(); ++rank) {
        rankOf[idsByRank[rank]] = rank;
        gathered.words.push_back(std::move(byId[idsByRank[rank]]));
    }
    byId = {};
    // Postings gathered by rank, keeping entry order within a word (a counting sort).
    gathered.starts.assign(gathered.words.size() + 1, 0);
    for (std::uint32_t id : idOf) ++gathered.starts[rankOf[id] + 1];
    for (std::size_t r = 1; r < gathered.starts.size(); ++r) gathered.starts[r] += gathered.starts[r - 1];
    std::vector<std::size_t> next(gathered.starts.begin(), gathered.starts.end() - 1);
    gathered.postings.resize(byEntry.size());
    for (std::size_t k = 0; k < byEntry.size(); ++k) gathered.postings[next[rankOf[idOf[k]]]++] = byEntry[k];
    return gathered;
}

}  // namespace

void writeSearchFiles(std::span<SearchEntry const> entries, SiteFileSink const& write) {
    std::string const folder(searchFolder);
    std::size_t const count = entries.size();

    // The query-independent order: current first, shorter names (code points), names by code point, index.
    std::vector<std::size_t> byOrder(count);
    std::iota(byOrder.begin(), byOrder.end(), std::size_t{0});
    std::vector<std::size_t> lengths(count);
    for (std::size_t i = 0; i < count; ++i)
        lengths[i] = static_cast<std::size_t>(utf8::distance(entries[i].name.begin(),
                                                             utf8::find_invalid(entries[i].name.begin(), entries[i].name.end())));
    std::stable_sort(byOrder.begin(), byOrder.end(), [&](std::size_t a, std::size_t b) {
        return std::tuple(entries[a].deprecated, lengths[a], std::string_view(entries[a].name)) <
               std::tuple(entries[b].deprecated, lengths[b], std::string_view(entries[b].name));
    });
    std::vector<std::size_t> order(count);
    for (std::size_t place = 0; place < count; ++place) order[byOrder[place]] = place;

    auto const record = [&](std::size_t id) {
        SearchEntry const& entry = entries[id];
        return Json{entry.name, dashEntryType(entry.entityType), RefEntityType::enumToString(entry.entityType),
                    FunctionType::enumToString(entry.functionType), entry.purpose, entry.deprecated, entry.path};
    };
    // The name tries are written, and released, before the words are gathered: meta.js keeps only their keys.
    Json split = Json::object(), files = Json::object();
    {
        std::vector<Keyed<NameItem>> names, lasts;
        names.reserve(count);
        lasts.reserve(count);
        for (std::size_t i = 0; i < count; ++i) {
            std::string_view const name = entries[i].name;
            NameItem const item{static_cast<std::uint32_t>(i), static_cast<std::uint32_t>(order[i])};
            names.push_back({keyOf(name), item});
            auto const dot = name.rfind('.');
            lasts.push_back({keyOf(dot == std::string_view::npos ? name : name.substr(dot + 1)), item});
        }
        auto const bestNames = [](auto const& items) {
            std::vector<NameItem> kept;
            for (auto const& entry : items) kept.push_back(entry.item);
            std::sort(kept.begin(), kept.end(), [](NameItem a, NameItem b) { return a.order < b.order; });
            if (kept.size() > searchPrefixCap) kept.resize(searchPrefixCap);
            return kept;
        };
        auto const none = [](auto const&) { return std::vector<NameItem>{}; };
        // Name shards carry their entries whole: hits of the name tiers need no entry block.
        auto const writeNames = [&](char const* prefix, Trie<NameItem> const& trie) {
            for (auto const& [key, items] : trie.nodes) {
                Json list = Json::array();
                for (auto const& item : items) {
                    Json row{item.id, entries[item.id].name, item.order};
                    for (auto& field : record(item.id)) row.push_back(std::move(field));
                    list.push_back(std::move(row));
                }
                std::string const name = fmt::format("{}-{}", prefix, hexOf(key));
                write(folder + name + ".js", shardScript(name, list));
            }
            split[prefix] = splitKeys(trie);
            files[prefix] = nodeKeys(trie);
        };
        writeNames("n", buildTrie(std::move(names), bestNames));
        writeNames("l", buildTrie(std::move(lasts), none));
    }

    WordPostings const words = gatherWords(entries, order);
    // A word weighs its postings in its trie node; a long word what it writes there, its top.
    std::vector<Keyed<std::uint32_t>> wordKeys;
    wordKeys.reserve(words.words.size());
    for (std::uint32_t rank = 0; rank < words.words.size(); ++rank) {
        std::size_t const postings = words.postingsOf(rank).size();
        std::size_t const weight = postings > searchLongPostings ? searchTopPostings : postings;
        wordKeys.push_back({keyOf(words.words[rank]), rank, weight});
    }
    auto const noWords = [](auto const&) { return std::vector<std::uint32_t>{}; };
    Trie<std::uint32_t> wordTrie = buildTrie(std::move(wordKeys), noWords);
    split["w"] = splitKeys(wordTrie);
    files["w"] = nodeKeys(wordTrie);

    Json meta{{"ranking", rankingDescription()},
              {"count", count},
              {"tokens", words.tokens},
              {"blockSize", searchBlockSize},
              {"prefixCap", searchPrefixCap},
              {"split", std::move(split)},
              {"files", std::move(files)}};
    write(folder + "meta.js", shardScript("meta", meta));

    double const averageLength = count == 0 ? 0.0 : static_cast<double>(words.tokens) / static_cast<double>(count);
    std::size_t fullFiles = 0;
    for (auto& [key, ranks] : wordTrie.nodes) {
        std::sort(ranks.begin(), ranks.end());  // ranks are word order
        Json data = Json::object();
        for (std::uint32_t rank : ranks) {
            std::span<Posting const> const list = words.postingsOf(rank);
            std::string const& word = words.words[rank];
            if (list.size() <= searchLongPostings) {
                data[word] = flat(list);
                continue;
            }
            std::string const full = fmt::format("f-{}", fullFiles);
            write(folder + full + ".js", shardScript(full, flat(list)));
            data[word] = longWord(list, count, averageLength, fullFiles++);
        }
        std::string const name = "w-" + hexOf(key);
        write(folder + name + ".js", shardScript(name, data));
    }
    for (std::size_t block = 0; block * searchBlockSize < count; ++block) {
        Json list = Json::array();
        for (std::size_t i = block * searchBlockSize; i < std::min(count, (block + 1) * searchBlockSize); ++i)
            list.push_back(record(i));
        std::string const name = fmt::format("e-{}", block);
        write(folder + name + ".js", shardScript(name, list));
    }
}

}  // namespace refpage
