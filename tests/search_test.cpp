// The site's search data: written in shards no larger than their limits, and ranked by
// search-rank.js (through node) exactly as `refpage find` ranks the same entries.
#include <fmt/format.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <nlohmann/json.hpp>
#include <random>
#include <reference/property/RecordProducer.hpp>
#include <refpage/docset/LookupIndex.hpp>
#include <refpage/site/Search.hpp>
#include <string>
#include <utf8.h>
#include <vector>

#include "support/Files.hpp"
#include "support/Shell.hpp"

namespace {

using namespace refpage;
using Json = nlohmann::json;
using Lines = std::vector<std::string>;
namespace fs = std::filesystem;
using reference::property::RefEntityType;
using testvalues::shellQuoted;

/// Entries sharing long name prefixes (so that tries split), some names repeated, every
/// seventh deprecated, purposes from a small vocabulary with non-ASCII words; "pkg" and "the"
/// are words of more than searchLongPostings entries.
std::vector<SearchEntry> generatedEntries(std::size_t count) {
    Lines const vocabulary{"sort", "array", "copy", "Größe", "axis", "index", "mask", "sorted",
                           "values", "ÄRGER", "fill", "order", "mean", "table", "the", "of"};
    Lines const modules{"pkg", "pkg.ma", "pkg.linalg", "pkg.ndarray", "pkg.linalg.lapack", "other"};
    Lines const stems{"sort", "copy", "mean", "arg", "fill", "sortx", "s", "p"};
    std::mt19937 random(7);
    auto const pick = [&](Lines const& from) { return from[random() % from.size()]; };
    std::vector<SearchEntry> entries;
    for (std::size_t i = 0; i < count; ++i) {
        SearchEntry entry;
        entry.name = fmt::format("{}.{}{}", pick(modules), pick(stems), i % 5 == 0 ? "" : std::to_string(i % 97));
        if (i % 10 < 7) entry.purpose = "The ";  // a word in most entries, as a package's name is in every name
        for (std::size_t w = 0, words = 1 + random() % 8; w < words; ++w) entry.purpose += pick(vocabulary) + " ";
        entry.entityType = i % 11 == 0 ? RefEntityType::Class : RefEntityType::Function;
        entry.deprecated = i % 7 == 0;
        entry.path = fmt::format("ref/p{}.html", i);
        entries.push_back(std::move(entry));
    }
    return entries;
}

/// The shard files written, by path under the site's root.
std::map<std::string, std::string> written(std::vector<SearchEntry> const& entries) {
    std::map<std::string, std::string> files;
    writeSearchFiles(entries, [&](std::string_view path, std::string_view bytes) { files[std::string(path)] = bytes; });
    return files;
}

Json payload(std::string const& script) {
    std::size_t const comma = script.find(',');
    return Json::parse(script.substr(comma + 1, script.rfind(')') - comma - 1));
}

TEST(SearchFiles, NameShardsStayWithinTheirLimitAndEveryEntryIsInOneBlock) {
    auto const entries = generatedEntries(6000);
    auto const files = written(entries);
    Json const meta = payload(files.at("_site/search/meta.js"));
    EXPECT_EQ(meta["count"], 6000);
    EXPECT_FALSE(meta["split"]["n"].empty()) << "6,000 names under \"pkg.\" split the name trie";
    EXPECT_TRUE(files.contains("_site/search/f-1.js")) << "\"pkg\" and \"the\" are long words";
    std::size_t blocks = 0;
    for (auto const& [path, script] : files) {
        std::string const name = path.substr(std::string(searchFolder).size());
        if (name.starts_with("n-") || name.starts_with("l-")) {
            EXPECT_LE(payload(script).size(), searchShardLimit + searchPrefixCap) << name;
        }
        if (name.starts_with("e-")) blocks += payload(script).size();
        EXPECT_TRUE(script.starts_with("refpageSearchShard(\"" + name.substr(0, name.size() - 3) + "\",")) << name;
    }
    EXPECT_EQ(blocks, entries.size());
    EXPECT_EQ(files, written(entries)) << "same entries, same bytes";
}

TEST(SearchFiles, TheScriptRanksTheFirstTwentyExactlyAsFind) {
    if (testvalues::runShell("command -v node >/dev/null 2>&1").status != 0) GTEST_SKIP() << "node is not installed";
    auto const entries = generatedEntries(6000);
    testvalues::ScratchFolder const folder;
    for (auto const& [path, bytes] : written(entries)) folder.write(path, bytes);

    std::vector<LookupEntry> lookups;
    for (std::size_t i = 0; i < entries.size(); ++i)
        lookups.push_back({reference::property::RecordProducer::makeRefItemLookup(
                               utf8::utf8to16(entries[i].name), entries[i].entityType, utf8::utf8to16(entries[i].purpose),
                               entries[i].deprecated, utf8::utf8to16(entries[i].path), entries[i].functionType),
                           i, "generated"});
    LookupIndex const index = LookupIndex::inMemory(lookups);

    Lines const queries{"sort", "pkg.sort", "pkg.linalg.", "pkg.l", "p", "s", "array", "sort array", "größe",
                        "GRÖSSE", "ärger values", "the of", "sort sort", "mean3", "arg", "nothing-here", "\"",
                        "other.p", "o", "pkg.ndarray.fill1", "the", "THE", "pkg", "pkg the", "the pkg sort",
                        "pkg.linalg the", "the the", "mask the"};
    fs::path const driver = folder.write("driver.js", fmt::format(R"js(
const fs = require('fs');
const rank = require({rank});
const shards = {{}};
global.refpageSearchShard = (name, data) => {{ shards[name] = data; }};
const load = (name) => {{
  const file = {folder} + '/_site/search/' + name + '.js';
  if (!(name in shards) && fs.existsSync(file)) eval(fs.readFileSync(file, 'utf8'));
}};
load('meta');
for (const query of JSON.parse(process.argv[2])) {{
  rank.shardsFor(shards.meta, query).forEach(load);
  rank.moreShardsFor(shards.meta, shards, query).forEach(load);
  const hits = rank.rankLoaded(shards.meta, shards, query, 20);
  rank.blocksFor(shards.meta, shards, hits.map((hit) => hit.id), query).forEach(load);
  console.log(JSON.stringify(hits.map((hit) => rank.entryOf(shards.meta, shards, hit.id, query).name + '|' + hit.tier)));
}}
)js", fmt::arg("rank", Json(REFPROP_SOURCE_DIR "/tools/refpage/site/assets/search-rank.js").dump()),
      fmt::arg("folder", Json(folder.path().string()).dump())));
    auto const script = testvalues::runShell(fmt::format("node {} {}", driver.string(), shellQuoted(Json(queries).dump())));
    ASSERT_EQ(script.status, 0) << script.output;
    std::vector<Json> results;
    for (std::string const& line : testvalues::lines(script.output)) results.push_back(Json::parse(line));
    ASSERT_EQ(results.size(), queries.size());
    for (std::size_t q = 0; q < queries.size(); ++q) {
        Lines expected;
        for (auto const& hit : index.find(queries[q], 20)) expected.push_back(hit.name + "|" + std::string(hit.tier));
        EXPECT_EQ(results[q].get<Lines>(), expected) << queries[q];
    }
}

}  // namespace
