// The lookup index: its database as SQLite sees it, the ranking through the file
// and in memory, and the query text never taken as query syntax.
#include <fmt/format.h>
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <random>
#include <refpage/Json.hpp>
#include <refpage/LookupIndex.hpp>
#include <refpage/ParallelLoad.hpp>
#include <string>
#include <vector>

#include "support/HostTest.hpp"
#include "support/ToolRun.hpp"

namespace {

namespace fs = std::filesystem;
using refpage::PageInput;

/// A page "<file>.json" at Href "ref/<file>.html" documenting `entities` (JSON array members).
PageInput page(std::string const& file, std::string const& entities, std::string const& purpose,
               char const* status = "current") {
    return {file + ".json",
            fmt::format(R"({{"Href": "ref/{}.html", "RefEntities": [{}], "Purpose": "{}", "DeprecationStatus": "{}"}})",
                        file, entities, purpose, status)};
}

std::string entity(std::string const& name, char const* type = "function") {
    return fmt::format(R"({{"Name": "{}", "RefEntityType": "{}"}})", name, type);
}

/// Rows of an SQL query over a database file, each row its columns joined by '|'.
std::vector<std::string> rows(fs::path const& file, char const* sql) {
    sqlite3* db = nullptr;
    sqlite3_open_v2(file.c_str(), &db, SQLITE_OPEN_READONLY, nullptr);
    std::vector<std::string> result;
    sqlite3_exec(
        db, sql,
        [](void* out, int count, char** values, char**) {
            std::string row;
            for (int i = 0; i < count; ++i) row += (i ? "|" : "") + std::string(values[i] ? values[i] : "NULL");
            static_cast<std::vector<std::string>*>(out)->push_back(row);
            return 0;
        },
        &result, nullptr);
    sqlite3_close(db);
    return result;
}

class LookupIndexTest : public HostTest {
protected:
    void SetUp() override {
        HostTest::SetUp();
        inputs_ = {
            page("argsort", entity("numpy.argsort"), "Returns the indices that would sort an array."),
            page("sort", entity("numpy.sort"), "Return a sorted copy of an array."),
            page("ndsort", entity("numpy.ndarray.sort", "method"), "Sort an array in place."),
            page("sorter", entity("sorted_things", "class") + "," + entity("sorted_things", "constructor"),
                 "Things kept in order."),
            page("oldsort", entity("numpy.msort"), "Sort an array along its first axis.", "warn"),
            page("copy", entity("numpy.copy"), "Return an array copy of the given object."),
            page("none", "", "A page without entities."),
        };
        auto const results = refpage::loadPages(inputs_, 2, {});
        refpage::DocSet const set(refpage::docSetPages(inputs_, results));
        entries_ = refpage::lookupEntries(set);
        file_ = fs::path(::testing::TempDir()) / fmt::format("lookup-{}.sqlite", ::getpid());
        refpage::writeLookupIndex(file_, entries_);
    }
    void TearDown() override {
        entries_.clear();
        fs::remove(file_);
        HostTest::TearDown();
    }

    /// Names of the hits for `query`, through the file and (checked to agree) in memory.
    std::vector<std::string> names(std::string const& query, std::size_t limit = 0) {
        auto const fromFile = refpage::LookupIndex::open(file_).find(query, limit);
        auto const inMemory = refpage::LookupIndex::inMemory(entries_).find(query, limit);
        std::vector<std::string> result;
        for (auto const& hit : fromFile) result.push_back(fmt::format("{}:{}", hit.name, hit.tier));
        std::vector<std::string> memoryNames;
        for (auto const& hit : inMemory) memoryNames.push_back(fmt::format("{}:{}", hit.name, hit.tier));
        EXPECT_EQ(result, memoryNames) << "the file and the in-memory index rank differently";
        return result;
    }

    std::vector<PageInput> inputs_;
    std::vector<refpage::LookupEntry> entries_;
    fs::path file_;
};

TEST_F(LookupIndexTest, TheFileHoldsOneRowPerEntityTheFullTextTableAndTheDocsetTable) {
    EXPECT_EQ(rows(file_, "PRAGMA user_version"), std::vector<std::string>{"1"});
    EXPECT_EQ(rows(file_, "SELECT name FROM sqlite_master WHERE type = 'table' AND name IN "
                          "('lookup', 'lookup_text', 'searchIndex') ORDER BY name"),
              (std::vector<std::string>{"lookup", "lookup_text", "searchIndex"}));
    EXPECT_EQ(rows(file_, "SELECT sql FROM sqlite_master WHERE name = 'anchor'"),
              std::vector<std::string>{"CREATE UNIQUE INDEX anchor ON searchIndex (name, type, path)"});
    EXPECT_EQ(rows(file_, "SELECT group_concat(name || ' ' || type, ', ') FROM pragma_table_info('searchIndex')"),
              std::vector<std::string>{"id INTEGER, name TEXT, type TEXT, path TEXT"});
    EXPECT_EQ(rows(file_, "SELECT id, name, last, entity_type, function_type, deprecated, href, page_file FROM lookup "
                          "WHERE id IN (3, 4, 5, 6)"),
              (std::vector<std::string>{"3|numpy.ndarray.sort|sort|2|6|0|ref/ndsort.html|ndsort.json",
                                        "4|sorted_things|sorted_things|1|6|0|ref/sorter.html|sorter.json",
                                        "5|sorted_things|sorted_things|3|6|0|ref/sorter.html|sorter.json",
                                        "6|numpy.msort|msort|0|6|1|ref/oldsort.html|oldsort.json"}));
    EXPECT_EQ(rows(file_, "SELECT count(*) FROM lookup"), std::vector<std::string>{"7"}) << "one row per entity";
    EXPECT_EQ(rows(file_, "SELECT name, type, path FROM searchIndex WHERE path = 'ref/sorter.html' ORDER BY id"),
              (std::vector<std::string>{"sorted_things|Class|ref/sorter.html",
                                        "sorted_things|Constructor|ref/sorter.html"}));
    EXPECT_EQ(rows(file_, "SELECT rowid FROM lookup_text WHERE lookup_text MATCH 'indices'"),
              std::vector<std::string>{"1"});
}

TEST_F(LookupIndexTest, ExactNameThenLastComponentThenPrefixThenFullTextWithDeprecatedLast) {
    EXPECT_EQ(names("sort"), (std::vector<std::string>{
                                 "numpy.sort:lastComponent", "numpy.ndarray.sort:lastComponent",
                                 "sorted_things:namePrefix", "sorted_things:namePrefix", "numpy.msort:fullText",
                                 "numpy.argsort:fullText",
                             }));
    EXPECT_EQ(names("numpy.sort")[0], "numpy.sort:exactName");
    EXPECT_EQ(names("numpy.").size(), 5u);
    EXPECT_EQ(names("array")[0], "numpy.ndarray.sort:fullText") << "the shortest purpose ranks first under BM25";
    EXPECT_EQ(names("sorted_things"), (std::vector<std::string>{"sorted_things:exactName", "sorted_things:exactName"}))
        << "the class and its constructor";
    EXPECT_EQ(names("sort", 2), (std::vector<std::string>{"numpy.sort:lastComponent", "numpy.ndarray.sort:lastComponent"}));
    EXPECT_TRUE(names("zebra").empty());
    EXPECT_TRUE(names("").empty());
}

TEST_F(LookupIndexTest, QuerySyntaxInTheQueryIsTextNeverAnError) {
    for (char const* query : {"\"", "sort*", "NEAR(sort array)", "sort OR copy", "a:b", "-sort", "'; DROP TABLE lookup;--",
                              "\xff\xfe", "(", "^sort", "{name}: sort"}) {
        EXPECT_NO_THROW(names(query)) << query;
    }
    EXPECT_EQ(names("copy OR sort"), std::vector<std::string>{}) << "OR is a word here, and no purpose has it";
    EXPECT_EQ(names("SORT Array"),
              (std::vector<std::string>{"numpy.ndarray.sort:fullText", "numpy.sort:fullText", "numpy.msort:fullText",
                                        "numpy.argsort:fullText"}))
        << "case folded; numpy.sort and the deprecated numpy.msort score alike";
}

TEST_F(LookupIndexTest, RewritingReplacesTheFileAndAFailedWriteLeavesNothing) {
    refpage::writeLookupIndex(file_, std::span(entries_).first(2));
    EXPECT_EQ(refpage::LookupIndex::open(file_).size(), 2u);
    fs::path const nowhere = fs::path(::testing::TempDir()) / "no-such-folder" / "index.sqlite";
    EXPECT_THROW(refpage::writeLookupIndex(nowhere, entries_), refpage::LookupIndexError);
    for (auto const& item : fs::directory_iterator(file_.parent_path()))
        EXPECT_EQ(item.path().string().find(file_.string() + ".tmp-"), std::string::npos) << item.path();
    EXPECT_THROW(refpage::LookupIndex::open(nowhere), refpage::LookupIndexError);
    fs::path const notAnIndex = file_.string() + ".txt";
    { std::FILE* f = std::fopen(notAnIndex.c_str(), "w"); std::fputs("not a database", f); std::fclose(f); }
    EXPECT_THROW(refpage::LookupIndex::open(notAnIndex), refpage::LookupIndexError);
    fs::remove(notAnIndex);
}

TEST(DashEntryType, EveryEntityTypeHasADocsetTypeAndUnknownNumbersAreEntries) {
    using T = reference::property::RefEntityType;
    EXPECT_EQ(refpage::dashEntryType(T::Function), "Function");
    EXPECT_EQ(refpage::dashEntryType(T::Properties), "Property");
    EXPECT_EQ(refpage::dashEntryType(T::Unknown), "Entry");
    EXPECT_EQ(refpage::dashEntryType(static_cast<T::Value>(4000)), "Entry");
    for (std::uint32_t v = 0; v < T::Unknown; ++v)
        EXPECT_NE(refpage::dashEntryType(static_cast<T::Value>(v)), "Entry") << v;
}

}  // namespace

// ---- the tool: index and find as a user runs them, and the site's script ranking alike ----

namespace {

using testvalues::ToolRun;

/// Runs `command` through the shell; stderr goes to the test's log.
ToolRun run(std::string const& command) {
    return testvalues::runShell(command);
}

std::string shellQuoted(std::string const& text) {
    std::string quotedText = "'";
    for (char const c : text) quotedText += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return quotedText + "'";
}

std::vector<std::string> lines(std::string const& text) {
    std::vector<std::string> result;
    std::size_t start = 0;
    for (std::size_t end; (end = text.find('\n', start)) != std::string::npos; start = end + 1)
        result.push_back(text.substr(start, end - start));
    return result;
}

/// A generated doc set of 80 pages in a fresh folder: names and purposes drawn from a small
/// vocabulary (some non-ASCII), every fifth page deprecated, every seventh a class with its constructor.
class GeneratedSetTest : public ::testing::Test {
protected:
    void SetUp() override {
        folder_ = fs::path(::testing::TempDir()) / fmt::format("lookup-set-{}", ::getpid());
        fs::remove_all(folder_);
        fs::create_directories(folder_ / "pages");
        std::vector<std::string> const vocabulary{"sort", "array", "copy", "Größe", "axis", "index", "mask",
                                                  "sorted", "values", "ÄRGER", "fill", "order", "mean", "table"};
        std::vector<std::string> const modules{"pkg", "pkg.ma", "pkg.linalg", "pkg.ndarray"};
        std::mt19937 random(13);
        auto const pick = [&](std::vector<std::string> const& from) { return from[random() % from.size()]; };
        for (int i = 0; i < 80; ++i) {
            std::string const name = fmt::format("{}.{}{}", pick(modules), pick({"sort", "copy", "mean", "arg", "fill"}),
                                                 i % 3 == 0 ? "" : pick({"", "_values", "sort", "x"}));
            std::string purpose;
            for (std::size_t w = 0, count = 2 + random() % 9; w < count; ++w) purpose += pick(vocabulary) + " ";
            std::string const entities =
                i % 7 == 0 ? fmt::format(R"({{"Name": "{0}", "RefEntityType": "class"}}, {{"Name": "{0}", "RefEntityType": "constructor"}})", name)
                           : fmt::format(R"({{"Name": "{}", "RefEntityType": "function"}})", name);
            std::ofstream(folder_ / "pages" / fmt::format("p{:02}.json", i))
                << fmt::format(R"({{"Href": "ref/p{}.html", "RefEntities": [{}], "Purpose": "{}", "DeprecationStatus": "{}"}})",
                               i, entities, purpose, i % 5 == 0 ? "warn" : "current");
        }
        index_ = folder_ / "index.sqlite";
        ToolRun const indexing = run(fmt::format("{} index {} -o {} -j 2", REFPAGE_BINARY, (folder_ / "pages").string(),
                                                 index_.string()));
        ASSERT_EQ(indexing.status, 0) << indexing.output;
    }
    void TearDown() override { fs::remove_all(folder_); }

    /// "name|rank" of each hit of `find --json`, from the index file or from the pages.
    std::vector<std::string> found(std::string const& query, bool fromIndex, std::string const& options = "") {
        std::string const index = fromIndex ? "--index " + index_.string() : "";
        std::string const pages = fromIndex ? "" : (folder_ / "pages").string();
        ToolRun const result = run(fmt::format("{} find --json {} {} -- {} {}", REFPAGE_BINARY, options, index,
                                               shellQuoted(query), pages));
        EXPECT_EQ(result.status, result.output.empty() ? 1 : 0) << query;
        std::vector<std::string> hits;
        for (auto const& line : lines(result.output)) {
            refpage::Json const hit = refpage::Json::parse(line);
            hits.push_back(hit["name"].get<std::string>() + "|" + hit["rank"].get<std::string>());
        }
        return hits;
    }

    fs::path folder_;
    fs::path index_;
};

std::vector<std::string> const queries{"sort", "pkg.sort", "pkg.ma.", "array", "sort array", "größe", "GRÖSSE",
                                       "ärger values", "mean_values", "axis order fill", "arg", "nothing-here", "\""};

TEST_F(GeneratedSetTest, FindRanksTheSameFromTheIndexFileAndFromThePages) {
    for (auto const& query : queries) EXPECT_EQ(found(query, true), found(query, false)) << query;
    EXPECT_EQ(found("sort", true, "--limit 3").size(), 3u);
}

TEST_F(GeneratedSetTest, FindExitsOneWhenNothingMatchesAndTwoForAMisuse) {
    EXPECT_EQ(run(fmt::format("{} find zebra --index {} 2>/dev/null", REFPAGE_BINARY, index_.string())).status, 1);
    EXPECT_EQ(run(fmt::format("{} find sort --index {} {} 2>/dev/null", REFPAGE_BINARY, index_.string(),
                              folder_.string())).status, 2);
    EXPECT_EQ(run(fmt::format("{} find sort --index {}/missing.sqlite 2>/dev/null", REFPAGE_BINARY, folder_.string())).status, 1);
    ToolRun const table = run(fmt::format("{} find sort --index {}", REFPAGE_BINARY, index_.string()));
    EXPECT_EQ(table.status, 0);
    EXPECT_NE(table.output.find("Name"), std::string::npos) << table.output;
}

TEST_F(GeneratedSetTest, TheSiteScriptRanksExactlyAsFind) {
    if (run("command -v node >/dev/null 2>&1").status != 0) GTEST_SKIP() << "node is not installed";
    fs::path const data = folder_ / "search-data.js";
    std::ofstream(data) << refpage::searchIndexScript(refpage::LookupIndex::open(index_));
    fs::path const driver = folder_ / "driver.js";
    std::ofstream(driver) << fmt::format(
        "const data = require({});\nconst {{ rankEntries }} = require({});\n"
        "for (const query of JSON.parse(process.argv[2]))\n"
        "  console.log(JSON.stringify(rankEntries(data, query, 0).map((hit) => hit.entry.name + '|' + hit.tier)));\n",
        refpage::Json(data.string()).dump(), refpage::Json(std::string(REFPROP_SOURCE_DIR) + "/tools/refpage/site/search-rank.js").dump());
    ToolRun const script = run(fmt::format("node {} {}", driver.string(), shellQuoted(refpage::Json(queries).dump())));
    ASSERT_EQ(script.status, 0) << script.output;
    auto const results = lines(script.output);
    ASSERT_EQ(results.size(), queries.size());
    for (std::size_t i = 0; i < queries.size(); ++i)
        EXPECT_EQ(refpage::Json::parse(results[i]).get<std::vector<std::string>>(), found(queries[i], true)) << queries[i];
}

}  // namespace
