// check, index and find over doc sets as a user runs them: every kind of finding with
// its file and pointer, the same output on any number of threads, the sample set, and
// find ranking the same from an index file and from the pages.
#include <fmt/format.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <random>
#include <refpage/format/Json.hpp>
#include <regex>
#include <string>
#include <vector>

#include "support/SetPages.hpp"
#include "support/TestPages.hpp"
#include "support/ToolRun.hpp"

namespace {

namespace fs = std::filesystem;
using refpage::PageInput;
using testvalues::contains;
using testvalues::documenting;
using testvalues::expectRun;
using testvalues::Lines;
using testvalues::lines;
using testvalues::page;
using testvalues::shellQuoted;
using testvalues::ToolRun;

/// The output without the run time "(0.01 s)".
std::string untimed(std::string const& output) {
    return std::regex_replace(output, std::regex(R"( \([0-9.]+ s\))"), "");
}

class CheckSetTest : public ::testing::Test {
protected:
    void write(std::string const& name, PageInput const& input) const { folder_.write(name, *input.text); }
    std::string folder() const { return folder_.path().string(); }

    testvalues::ScratchFolder folder_;
};

TEST_F(CheckSetTest, EachKindOfFindingIsAWarningWithFileAndPointerAndCountedInTheSummary) {
    write("a.json", page("a", R"("SeeAlso": [{"Url": "ref/b.html"}, {"Url": "ref/gone.html"}])"));
    write("b.json", page("b"));
    write("c.json", page("a"));
    std::string const at = folder() + "/";
    expectRun("check -j 2 " + folder(), 0,
              {at + R"(a.json: warning: link "ref/gone.html" leads to no page of the set [/SeeAlso/1/Url])",
               at + R"(c.json: warning: Href "ref/a.html" is also the Href of ")",
               at + R"(c.json: warning: entity name "pkg.a" is also documented by ")",
               "3 pages, 0 failed, 1 unresolved link, 1 shared Href, 1 duplicate name ("});
    expectRun("check --strict " + folder(), 1,
              {at + R"(a.json: error: link "ref/gone.html" leads to no page of the set [/SeeAlso/1/Url])"});
}

TEST_F(CheckSetTest, ACleanSetPassesStrictAndOnePageIsNotASet) {
    write("a.json", page("a", R"("SeeAlso": [{"Url": "ref/b.html#x"}, {"Url": "https://example.org/"}])"));
    write("b.json", page("b", R"("SeeAlso": [{"Url": "ref/gone.html"}])"));
    EXPECT_EQ(untimed(expectRun("check --strict " + folder() + "/a.json", 0).output), "1 pages, 0 failed\n");
    write("b.json", page("b"));
    EXPECT_EQ(untimed(expectRun("check --strict " + folder(), 0).output),
              "2 pages, 0 failed, 0 unresolved links, 0 shared Hrefs, 0 duplicate names\n");
}

TEST_F(CheckSetTest, FourThreadsPrintWhatOneThreadPrints) {
    for (int i = 0; i < 40; ++i)
        write(fmt::format("p{:02}.json", i),
              i % 9 == 4 ? PageInput::memory("", "{\"Href\": [1]}")
                         : page(fmt::format("p{}", i % 30), fmt::format(R"("SeeAlso": [{{"Url": "ref/p{}.html"}}])", i + 3)));
    ToolRun const one = expectRun("check -j 1 " + folder(), 1, {"40 pages, 4 failed, "});
    EXPECT_EQ(untimed(expectRun("check -j 4 " + folder(), 1).output), untimed(one.output));
}

TEST(CheckCorpus, TheSampleSetHasBrokenSeeAlsoLinksMissingThumbnailsAndNoDuplicateNames) {
    std::optional<fs::path> const corpus = testvalues::corpusFolder();
    if (!corpus) GTEST_SKIP() << testvalues::noCorpus;
    // Its 81 names given twice are each a class and its constructor on one page: not duplicates.
    expectRun("check " + corpus->string(), 0,
              {"961 pages, 0 failed, 264 unresolved links, 0 shared Hrefs, 0 duplicate names, 84 missing files (",
               "numpy.absolute.json: warning: file \"images/numpy.absolute.png\" cannot be published from ",
               "numpy.sort.json: warning: link \"reference/generated/numpy.ndarray.sort.html\" leads to no page of the "
               "set [/SeeAlso/0/Url]"});
}

/// A doc set of 80 pages indexed by the tool: names and purposes drawn from a small vocabulary
/// (some non-ASCII), every fifth page deprecated, every seventh a class with its constructor.
class GeneratedSetTest : public ::testing::Test {
protected:
    void SetUp() override {
        Lines const vocabulary{"sort", "array", "copy", "Größe", "axis", "index", "mask",
                               "sorted", "values", "ÄRGER", "fill", "order", "mean", "table"};
        Lines const modules{"pkg", "pkg.ma", "pkg.linalg", "pkg.ndarray"};
        std::mt19937 random(13);
        auto const pick = [&](Lines const& from) { return from[random() % from.size()]; };
        for (int i = 0; i < 80; ++i) {
            std::string const name = fmt::format("{}.{}{}", pick(modules), pick({"sort", "copy", "mean", "arg", "fill"}),
                                                 i % 3 == 0 ? "" : pick({"", "_values", "sort", "x"}));
            std::string purpose;
            for (std::size_t w = 0, count = 2 + random() % 9; w < count; ++w) purpose += pick(vocabulary) + " ";
            folder_.write(fmt::format("pages/p{:02}.json", i),
                          *page(fmt::format("p{}", i), documenting(i % 7 == 0 ? Lines{name + ":class", name + ":constructor"}
                                                                              : Lines{name + ":function"}, purpose) +
                                                           (i % 5 == 0 ? R"(, "DeprecationStatus": "warn")" : ""))
                               .text);
        }
        expectRun(fmt::format("index {} -o {} -j 2", pages(), index()), 0);
    }
    std::string pages() const { return (folder_ / "pages").string(); }
    std::string index() const { return (folder_ / "index.sqlite").string(); }

    /// "name|rank" of each hit of `find --json`, from the index file or from the pages.
    Lines found(std::string const& query, bool fromIndex, std::string const& options = "") {
        ToolRun const result = testvalues::refpage(fmt::format("find --json {} {} -- {} {}", options,
                                                               fromIndex ? "--index " + index() : "",
                                                               shellQuoted(query), fromIndex ? "" : pages()),
                                                   "");
        EXPECT_EQ(result.status, result.output.empty() ? 1 : 0) << query;
        Lines hits;
        for (auto const& line : lines(result.output)) {
            refpage::Json const hit = refpage::Json::parse(line);
            hits.push_back(hit["name"].get<std::string>() + "|" + hit["rank"].get<std::string>());
        }
        return hits;
    }

    testvalues::ScratchFolder folder_;
};

Lines const queries{"sort", "pkg.sort", "pkg.ma.", "array", "sort array", "größe", "GRÖSSE",
                    "ärger values", "mean_values", "axis order fill", "arg", "nothing-here", "\""};

TEST_F(GeneratedSetTest, FindRanksTheSameFromTheIndexFileAndFromThePagesAndExitsAsDocumented) {
    for (auto const& query : queries) EXPECT_EQ(found(query, true), found(query, false)) << query;
    EXPECT_EQ(found("sort", true, "--limit 3").size(), 3u);
    expectRun("find zebra --index " + index(), 1);
    expectRun("find sort --index " + index() + " " + pages(), 2);
    expectRun("find sort --index " + pages() + "/missing.sqlite", 1);
    expectRun("find sort --index " + index(), 0, {"Name  ", "pkg."}, "2>/dev/null");
}

}  // namespace
