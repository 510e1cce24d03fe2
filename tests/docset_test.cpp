// A doc set as a whole: where links lead, what the cross-page check finds, what a
// page lists, loading on several threads giving what one thread gives; and the lookup
// index (its database as SQLite sees it, the ranking through the file and in memory,
// the query never taken as query syntax).
#include <fmt/format.h>
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <random>
#include <refpage/docset/DocSet.hpp>
#include <refpage/format/Json.hpp>
#include <refpage/docset/LookupIndex.hpp>
#include <refpage/docset/LoadSet.hpp>
#include <refpage/support/Parallel.hpp>
#include <regex>
#include <string>
#include <vector>

#include "support/HostTest.hpp"
#include "support/TestPages.hpp"
#include "support/SetPages.hpp"

namespace {

namespace fs = std::filesystem;
using refpage::DocSetIssue;
using refpage::LinkTarget;
using refpage::PageInput;
using testvalues::contains;
using testvalues::documenting;
using testvalues::lines;
using testvalues::page;
using testvalues::Lines;

class DocSetTest : public HostTest {
protected:
    static refpage::DocSet load(std::vector<PageInput> const& inputs, unsigned jobs = 1) {
        refpage::LoadedSet loaded = refpage::loadDocSet(inputs, jobs, {});
        for (auto const& said : loaded.diagnostics) EXPECT_TRUE(said.errors.empty()) << said.errors.front().describe();
        return std::move(loaded.set);
    }
    /// "file: warning: message [pointer]" of every finding.
    static Lines described(refpage::DocSetReport const& report) {
        Lines result;
        for (auto const& finding : report.findings) result.push_back(finding.where.describe(refpage::Severity::Warning));
        return result;
    }
};

TEST_F(DocSetTest, ResolveTellsPagesFromFragmentsExternalLinksAndMisses) {
    auto const set = load({page("a"), page("b")});
    auto const b = set.resolve("ref/b.html#pkg.b-x");
    EXPECT_EQ(b.kind, LinkTarget::Kind::Page);
    EXPECT_EQ(b.page, 1u);
    EXPECT_EQ(b.fragment, "pkg.b-x");
    EXPECT_EQ(set.resolve("./ref/a.html").kind, LinkTarget::Kind::Page);
    for (char const* same : {"#pkg.a-x", "./#pkg.a-x", "./", "#"})
        EXPECT_EQ(set.resolve(same).kind, LinkTarget::Kind::SamePage) << same;
    EXPECT_EQ(set.resolve("").kind, LinkTarget::Kind::Empty);
    for (char const* external : {"https://example.org/ref/x.html", "mailto:a@b.c", "//host/x", "/ref/x.html"})
        EXPECT_EQ(set.resolve(external).kind, LinkTarget::Kind::External) << external;
    EXPECT_EQ(set.resolve("ref/c.html#pkg.b").kind, LinkTarget::Kind::Unresolved);
    EXPECT_EQ(set.resolve("ref/B.html").kind, LinkTarget::Kind::Unresolved) << "Hrefs match case-sensitively";
}

TEST_F(DocSetTest, ALinkedSetWithExternalLinksAndFragmentsIsClean) {
    auto const set = load({
        page("a", R"("SeeAlso": [{"Name": "b", "Url": "ref/b.html#anything"}, {"Name": "web", "Url": "https://x.org/y"}],
                    "Examples": [{"Url": "ref/a.html#example-1"}],
                    "InputGroups": [{"Inputs": [{"Name": "x", "Href": "#pkg.a-x"}]}])"),
        page("b", R"("Outputs": [{"Name": "y", "Href": ""}])"),
    });
    EXPECT_TRUE(set.check().findings.empty());
}

TEST_F(DocSetTest, EveryKindOfLinkThatLeadsNowhereIsReportedAtItsPointer) {
    auto const report = load({page("a", R"(
        "InputGroups": [{"Inputs": [{"Name": "x", "Href": "ref/gone.html#x"}]}],
        "Outputs": [{"Name": "y", "Href": "ref/gone.html"}],
        "ClassPropertyGroups": [{"Properties": [{"Name": "p", "Href": "ref/gone.html"}]}],
        "SeeAlso": [{"Name": "gone", "Url": "ref/gone.html"}],
        "Examples": [{"Url": "ref/gone.html#example-1"}],
        "Parameters": [{"Name": "q", "Href": "ref/gone\u001b.html"}],
        "Description": "See [a](ref/a.html) and\n[gone](ref/gone.html#d).")")}).check();
    std::string const nowhere = "leads to no page of the set";
    EXPECT_EQ(described(report), (Lines{
        R"(a.json: warning: link "ref/gone.html#x" )" + nowhere + " [/InputGroups/0/Inputs/0/Href]",
        R"(a.json: warning: link "ref/gone.html" )" + nowhere + " [/Outputs/0/Href]",
        R"(a.json: warning: link "ref/gone.html" )" + nowhere + " [/ClassPropertyGroups/0/Properties/0/Href]",
        R"(a.json: warning: link "ref/gone.html" )" + nowhere + " [/SeeAlso/0/Url]",
        R"(a.json: warning: link "ref/gone.html#example-1" )" + nowhere + " [/Examples/0/Url]",
        R"(a.json: warning: link "ref/gone\x1b.html" )" + nowhere + " [/Parameters/0/Href]",
        R"(a.json: warning: link "ref/gone.html#d" )" + nowhere +
            " (line 2, column 1 of the description) [/Description]"}));
    EXPECT_EQ(report.count(DocSetIssue::UnresolvedLink), 7u);
}

TEST_F(DocSetTest, ReusedHrefsAndNamesAreReportedButAClassAndItsConstructorAreNot) {
    auto copy = page("a");
    copy.source = "copy.json";
    auto const reused = load({page("a"), page("b", R"("SeeAlso": [{"Url": "ref/a.html"}])"), copy});
    EXPECT_EQ(reused.resolve("ref/a.html").page, 0u) << "links lead to the first page of an Href";
    EXPECT_EQ(described(reused.check()), (Lines{
        R"(copy.json: warning: Href "ref/a.html" is also the Href of "a.json" [/Href])",
        R"(copy.json: warning: entity name "pkg.a" is also documented by "a.json" (/RefEntities/0) [/RefEntities/0/Name])"}));

    auto const report = load({page("a", documenting({"pkg.A:class", "pkg.A:constructor"}, "")),
                              page("b", documenting({"pkg.f:function", "pkg.f:function"}, "")),
                              page("c", documenting({"pkg.A:function"}, ""))}).check();
    EXPECT_EQ(described(report), (Lines{
        R"(b.json: warning: entity name "pkg.f" is also documented by /RefEntities/0 of this page [/RefEntities/1/Name])",
        R"(c.json: warning: entity name "pkg.A" is also documented by "a.json" (/RefEntities/0) [/RefEntities/0/Name])"}));
    EXPECT_EQ(report.count(DocSetIssue::DuplicateName), 2u);
    EXPECT_EQ(refpage::issueLabel(DocSetIssue::DuplicateName, 2), "duplicate names");
}

TEST_F(DocSetTest, APageListsItsEntitiesButAClassesConstructorAndItsPropertiesAtTheirAnchors) {
    auto const set = load({page("k", R"("RefEntities": [{"Name": "pkg.K", "RefEntityType": "class"},
        {"Name": "pkg.K", "RefEntityType": "constructor"}, {"Name": "pkg.K.go", "RefEntityType": "method"}],
        "ClassPropertyGroups": [{"Properties": [{"Name": "T", "Href": "#pkg.K-T"}, {"Name": "size"}]}])")});
    std::vector<std::string> listed;
    for (auto const& entry : set.pages()[0].entries)
        listed.push_back(fmt::format("{} {} #{}", entry.name, reference::property::RefEntityType::enumToString(entry.type),
                                     entry.anchor));
    EXPECT_EQ(listed, (Lines{"pkg.K Class #", "pkg.K.go Method #pkg.K.go", "pkg.K.T Property #pkg.K-T",
                             "pkg.K.size Property #property-size"}));
    auto const entries = refpage::lookupEntries(set);
    ASSERT_EQ(entries.size(), 4u);
    EXPECT_EQ(entries[2].lookup.getHref(), u"ref/k.html#pkg.K-T");
}

TEST_F(DocSetTest, LoadingOnFourThreadsGivesWhatOneThreadGivesInTheSameOrder) {
    std::vector<PageInput> inputs;
    for (int i = 0; i < 60; ++i)
        inputs.push_back(i % 7 == 3 ? PageInput::memory(fmt::format("bad{}.json", i), "{\"Href\": 1}")
                                    : page(fmt::format("p{}", i), R"("SeeAlso": [{"Url": "ref/p1.html"}])"));
    inputs.push_back(PageInput::file("missing.json"));
    auto const one = refpage::loadDocSet(inputs, 1, {});
    auto const four = refpage::loadDocSet(inputs, 4, {});
    EXPECT_EQ(four.inputOf, one.inputOf);
    EXPECT_EQ(four.failed, 10u);
    EXPECT_TRUE(four.set.pages() == one.set.pages());
    // A set loaded for its outputs keeps everything but the links.
    auto const outputs = refpage::loadDocSet(inputs, 4, {}, refpage::SummaryLinks::Left);
    ASSERT_EQ(outputs.set.pages().size(), one.set.pages().size());
    for (std::size_t i = 0; i < one.set.pages().size(); ++i) {
        auto withoutLinks = one.set.pages()[i];
        EXPECT_FALSE(withoutLinks.links.empty());
        withoutLinks.links.clear();
        EXPECT_TRUE(outputs.set.pages()[i] == withoutLinks) << i;
    }
    EXPECT_EQ(described(four.set.check(4)), described(one.set.check(1))) << "the set's check on threads";
    ASSERT_EQ(four.diagnostics.size(), inputs.size());
    for (std::size_t i = 0; i < inputs.size(); ++i) {
        ASSERT_EQ(one.diagnostics[i].errors.size(), four.diagnostics[i].errors.size()) << i;
        if (!four.diagnostics[i].errors.empty()) {
            EXPECT_EQ(one.diagnostics[i].errors.front().describe(), four.diagnostics[i].errors.front().describe());
            EXPECT_EQ(four.diagnostics[i].errors.front().source, inputs[i].source);
        }
    }
}

TEST(WorkerPool, EveryIndexRunsOnceAndTheFirstFailureIsRethrownAfterTheRest) {
    std::vector<int> visits(1000, 0);
    refpage::forEachIndex(visits.size(), 4, [&](std::size_t i) { ++visits[i]; });
    EXPECT_EQ(std::count(visits.begin(), visits.end(), 1), 1000);
    std::vector<int> done(10, 0);
    EXPECT_THROW(refpage::forEachIndex(10, 3, [&](std::size_t i) {
                     if (i == 5) throw std::runtime_error("five");
                     done[i] = 1;
                 }),
                 std::runtime_error);
    EXPECT_EQ(std::count(done.begin(), done.end(), 1), 9);
}

/// Rows of an SQL query over a database file, each row its columns joined by '|'.
Lines rows(fs::path const& file, char const* sql) {
    sqlite3* db = nullptr;
    sqlite3_open_v2(file.c_str(), &db, SQLITE_OPEN_READONLY, nullptr);
    Lines result;
    sqlite3_exec(
        db, sql,
        [](void* out, int count, char** values, char**) {
            std::string row;
            for (int i = 0; i < count; ++i) row += (i ? "|" : "") + std::string(values[i] ? values[i] : "NULL");
            static_cast<Lines*>(out)->push_back(row);
            return 0;
        },
        &result, nullptr);
    sqlite3_close(db);
    return result;
}

class LookupIndexTest : public DocSetTest {
protected:
    void SetUp() override {
        DocSetTest::SetUp();
        entries_ = refpage::lookupEntries(load({
            page("argsort", documenting({"numpy.argsort:function"}, "Returns the indices that would sort an array.")),
            page("sort", documenting({"numpy.sort:function"}, "Return a sorted copy of an array.")),
            page("ndsort", documenting({"numpy.ndarray.sort:method"}, "Sort an array in place.")),
            page("sorter", documenting({"sorted_things:class", "sorted_things:constructor"}, "Things kept in order.")),
            page("oldsort", documenting({"numpy.msort:function"}, "Sort an array along its first axis.") +
                                R"(, "DeprecationStatus": "warn")"),
            page("copy", documenting({"numpy.copy:function"}, "Return an array copy of the given object.")),
            page("none", documenting({}, "A page without entities.")),
        }, 2));
        refpage::writeLookupIndex(file_, entries_);
    }
    void TearDown() override {
        entries_.clear();
        fs::remove(file_);
        DocSetTest::TearDown();
    }

    /// "name:tier" of the hits for `query`, through the file and (checked to agree) in memory.
    Lines names(std::string const& query, std::size_t limit = 0) {
        Lines fromFile, inMemory;
        for (auto const& hit : refpage::LookupIndex::open(file_).find(query, limit))
            fromFile.push_back(fmt::format("{}:{}", hit.name, hit.tier));
        for (auto const& hit : refpage::LookupIndex::inMemory(entries_).find(query, limit))
            inMemory.push_back(fmt::format("{}:{}", hit.name, hit.tier));
        EXPECT_EQ(fromFile, inMemory) << "the file and the in-memory index rank differently";
        return fromFile;
    }

    std::vector<refpage::LookupEntry> entries_;
    fs::path const file_ = fs::path(::testing::TempDir()) / fmt::format("lookup-{}.sqlite", ::getpid());
};

TEST_F(LookupIndexTest, TheFileHoldsOneRowPerEntryTheFullTextTableAndTheDocsetTable) {
    EXPECT_EQ(rows(file_, "PRAGMA user_version"), Lines{"1"});
    EXPECT_EQ(rows(file_, "SELECT name FROM sqlite_master WHERE type = 'table' AND name IN "
                          "('lookup', 'lookup_text', 'searchIndex') ORDER BY name"),
              (Lines{"lookup", "lookup_text", "searchIndex"}));
    EXPECT_EQ(rows(file_, "SELECT sql FROM sqlite_master WHERE name = 'anchor'"),
              Lines{"CREATE UNIQUE INDEX anchor ON searchIndex (name, type, path)"});
    EXPECT_EQ(rows(file_, "SELECT group_concat(name || ' ' || type, ', ') FROM pragma_table_info('searchIndex')"),
              Lines{"id INTEGER, name TEXT, type TEXT, path TEXT"});
    EXPECT_EQ(rows(file_, "SELECT id, name, last, entity_type, function_type, deprecated, href, page_file FROM lookup "
                          "WHERE id IN (3, 4, 5, 6)"),
              (Lines{"3|numpy.ndarray.sort|sort|2|6|0|ref/ndsort.html|ndsort.json",
                     "4|sorted_things|sorted_things|1|6|0|ref/sorter.html|sorter.json",
                     "5|numpy.msort|msort|0|6|1|ref/oldsort.html|oldsort.json",
                     "6|numpy.copy|copy|0|6|0|ref/copy.html|copy.json"}));
    EXPECT_EQ(rows(file_, "SELECT count(*) FROM lookup"), Lines{"6"}) << "one row per entry";
    EXPECT_EQ(rows(file_, "SELECT name, type, path FROM searchIndex WHERE path = 'ref/sorter.html' ORDER BY id"),
              (Lines{"sorted_things|Class|ref/sorter.html"}))
        << "a class and its constructor documented together are one entry, the class";
    EXPECT_EQ(rows(file_, "SELECT rowid FROM lookup_text WHERE lookup_text MATCH 'indices'"), Lines{"1"});
}

TEST_F(LookupIndexTest, ExactNameThenLastComponentThenPrefixThenFullTextWithDeprecatedLast) {
    EXPECT_EQ(names("sort"), (Lines{"numpy.sort:lastComponent", "numpy.ndarray.sort:lastComponent",
                                    "sorted_things:namePrefix", "numpy.msort:fullText",
                                    "numpy.argsort:fullText"}));
    EXPECT_EQ(names("numpy.sort")[0], "numpy.sort:exactName");
    EXPECT_EQ(names("numpy.").size(), 5u);
    EXPECT_EQ(names("array")[0], "numpy.ndarray.sort:fullText") << "the shortest purpose ranks first under BM25";
    EXPECT_EQ(names("sorted_things"), (Lines{"sorted_things:exactName"}));
    EXPECT_EQ(names("sort", 2), (Lines{"numpy.sort:lastComponent", "numpy.ndarray.sort:lastComponent"}));
    EXPECT_TRUE(names("zebra").empty());
    EXPECT_TRUE(names("").empty());
}

TEST_F(LookupIndexTest, QuerySyntaxInTheQueryIsTextNeverAnError) {
    for (char const* query : {"\"", "sort*", "NEAR(sort array)", "sort OR copy", "a:b", "-sort",
                              "'; DROP TABLE lookup;--", "\xff\xfe", "(", "^sort", "{name}: sort"})
        EXPECT_NO_THROW(names(query)) << query;
    EXPECT_EQ(names("copy OR sort"), Lines{}) << "OR is a word here, and no purpose has it";
    EXPECT_EQ(names("SORT Array"), (Lines{"numpy.ndarray.sort:fullText", "numpy.sort:fullText", "numpy.msort:fullText",
                                          "numpy.argsort:fullText"}))
        << "case folded; numpy.sort and the deprecated numpy.msort score alike";
}

TEST_F(LookupIndexTest, RewritingReplacesTheFileAndAFailedWriteLeavesNothing) {
    refpage::writeLookupIndex(file_, std::span(entries_).first(2));
    EXPECT_EQ(refpage::LookupIndex::open(file_).size(), 2u);
    fs::path const nowhere = fs::path(::testing::TempDir()) / "no-such-folder" / "index.sqlite";
    EXPECT_THROW(refpage::writeLookupIndex(nowhere, entries_), refpage::LookupIndexError);
    for (auto const& item : fs::directory_iterator(file_.parent_path()))
        EXPECT_FALSE(contains(item.path().string(), file_.string() + ".tmp-")) << item.path();
    EXPECT_THROW(refpage::LookupIndex::open(nowhere), refpage::LookupIndexError);
    fs::path const notAnIndex = file_.string() + ".txt";
    std::ofstream(notAnIndex) << "not a database";
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
