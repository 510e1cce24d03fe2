// A doc set as a whole: where links lead, what the cross-page check finds, and
// loading on several threads giving what one thread gives.
#include <fmt/format.h>
#include <gtest/gtest.h>

#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <regex>
#include <refpage/DocSet.hpp>
#include <refpage/ParallelLoad.hpp>
#include <string>
#include <vector>

#include "support/HostTest.hpp"
#include "support/ToolRun.hpp"

namespace {

using refpage::DocSetIssue;
using refpage::LinkTarget;
using refpage::PageInput;

/// A page "<name>.json" at Href "ref/<name>.html" with the given extra keys (JSON members), and
/// unless they give RefEntities, one function "pkg.<name>".
PageInput page(std::string const& name, std::string const& extra = {}) {
    std::string const entities =
        extra.find("RefEntities") == std::string::npos
            ? fmt::format(R"(, "RefEntities": [{{"Name": "pkg.{}", "RefEntityType": "function"}}])", name)
            : "";
    return {name + ".json", fmt::format(R"({{"Href": "ref/{}.html"{}{}}})", name, entities,
                                        extra.empty() ? "" : ", " + extra)};
}

class DocSetTest : public HostTest {
protected:
    refpage::DocSet load(std::vector<PageInput> inputs) {
        inputs_ = std::move(inputs);
        results_ = refpage::loadPages(inputs_, 1, {});
        for (auto const& result : results_) EXPECT_TRUE(result.ok()) << result.errors.front().describe();
        return refpage::DocSet(refpage::docSetPages(inputs_, results_));
    }
    void TearDown() override {
        results_.clear();
        HostTest::TearDown();
    }

    /// "file: warning: message [pointer]" of every finding.
    static std::vector<std::string> described(refpage::DocSetReport const& report) {
        std::vector<std::string> lines;
        for (auto const& finding : report.findings) lines.push_back(finding.where.describe("warning"));
        return lines;
    }

private:
    std::vector<PageInput> inputs_;
    std::vector<refpage::LoadResult> results_;
};

TEST_F(DocSetTest, ResolveTellsPagesFromFragmentsExternalLinksAndMisses) {
    auto const set = load({page("a"), page("b")});
    auto const b = set.resolve("ref/b.html#pkg.b-x");
    EXPECT_EQ(b.kind, LinkTarget::Kind::Page);
    EXPECT_EQ(b.page, 1u);
    EXPECT_EQ(b.fragment, "pkg.b-x");
    EXPECT_EQ(set.resolve("./ref/a.html").kind, LinkTarget::Kind::Page);
    EXPECT_EQ(set.resolve("#pkg.a-x").kind, LinkTarget::Kind::SamePage);
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
    auto const set = load({page("a", R"(
        "InputGroups": [{"Inputs": [{"Name": "x", "Href": "ref/gone.html#x"}]}],
        "Outputs": [{"Name": "y", "Href": "ref/gone.html"}],
        "ClassPropertyGroups": [{"Properties": [{"Name": "p", "Href": "ref/gone.html"}]}],
        "SeeAlso": [{"Name": "gone", "Url": "ref/gone.html"}],
        "Examples": [{"Url": "ref/gone.html#example-1"}],
        "Parameters": [{"Name": "q", "Href": "ref/gone\u001b.html"}])")});
    auto const report = set.check();
    EXPECT_EQ(described(report), (std::vector<std::string>{
                                     R"(a.json: warning: link "ref/gone.html#x" leads to no page of the set [/InputGroups/0/Inputs/0/Href])",
                                     R"(a.json: warning: link "ref/gone.html" leads to no page of the set [/Outputs/0/Href])",
                                     R"(a.json: warning: link "ref/gone.html" leads to no page of the set [/ClassPropertyGroups/0/Properties/0/Href])",
                                     R"(a.json: warning: link "ref/gone.html" leads to no page of the set [/SeeAlso/0/Url])",
                                     R"(a.json: warning: link "ref/gone.html#example-1" leads to no page of the set [/Examples/0/Url])",
                                     R"(a.json: warning: link "ref/gone\x1b.html" leads to no page of the set [/Parameters/0/Href])",
                                 }));
    EXPECT_EQ(report.count(DocSetIssue::UnresolvedLink), 6u);
}

TEST_F(DocSetTest, APageReusingAnHrefIsReportedAndLinksLeadToTheFirst) {
    auto second = page("a");
    second.source = "copy.json";
    auto const set = load({page("a"), page("b", R"("SeeAlso": [{"Url": "ref/a.html"}])"), second});
    EXPECT_EQ(set.resolve("ref/a.html").page, 0u);
    EXPECT_EQ(described(set.check()),
              (std::vector<std::string>{
                  R"(copy.json: warning: Href "ref/a.html" is also the Href of "a.json" [/Href])",
                  R"(copy.json: warning: entity name "pkg.a" is also documented by "a.json" (/RefEntities/0) [/RefEntities/0/Name])",
              }));
}

TEST_F(DocSetTest, ANameOnTwoPagesOrTwiceWithOneTypeIsADuplicateButAClassAndItsConstructorAreNot) {
    auto const set = load({
        page("a", R"("RefEntities": [{"Name": "pkg.A", "RefEntityType": "class"}, {"Name": "pkg.A", "RefEntityType": "constructor"}])"),
        page("b", R"("RefEntities": [{"Name": "pkg.f", "RefEntityType": "function"}, {"Name": "pkg.f", "RefEntityType": "function"}])"),
        page("c", R"("RefEntities": [{"Name": "pkg.A", "RefEntityType": "function"}])"),
    });
    auto const report = set.check();
    EXPECT_EQ(described(report),
              (std::vector<std::string>{
                  R"(b.json: warning: entity name "pkg.f" is also documented by /RefEntities/0 of this page [/RefEntities/1/Name])",
                  R"(c.json: warning: entity name "pkg.A" is also documented by "a.json" (/RefEntities/0) [/RefEntities/0/Name])",
              }));
    EXPECT_EQ(report.count(DocSetIssue::DuplicateName), 2u);
    EXPECT_EQ(refpage::issueLabel(DocSetIssue::DuplicateName, 2), "duplicate names");
}

TEST_F(DocSetTest, LoadingOnFourThreadsGivesWhatOneThreadGivesInTheSameOrder) {
    std::vector<PageInput> inputs;
    for (int i = 0; i < 60; ++i)
        inputs.push_back(i % 7 == 3 ? PageInput{fmt::format("bad{}.json", i), "{\"Href\": 1}"}
                                    : page(fmt::format("p{}", i), R"("SeeAlso": [{"Url": "ref/p1.html"}])"));
    inputs.push_back({"missing-file-for-the-loader.json", std::nullopt, refpage::PageEntry{"missing-file-for-the-loader.json", {}}});
    auto const one = refpage::loadPages(inputs, 1, {});
    auto const four = refpage::loadPages(inputs, 4, {});
    ASSERT_EQ(four.size(), inputs.size());
    for (std::size_t i = 0; i < inputs.size(); ++i) {
        ASSERT_EQ(one[i].ok(), four[i].ok()) << i;
        if (one[i].ok()) {
            EXPECT_TRUE(refpage::nativePage(one[i].page.get()) == refpage::nativePage(four[i].page.get())) << i;
        } else {
            EXPECT_EQ(one[i].errors.front().describe(), four[i].errors.front().describe());
            EXPECT_EQ(four[i].errors.front().source, inputs[i].source);
        }
    }
}

TEST(ParallelLoad, ForEachIndexVisitsEveryIndexOnceAndRethrowsTheFirstFailure) {
    std::vector<int> visits(1000, 0);
    refpage::forEachIndex(visits.size(), 4, [&](std::size_t i) { ++visits[i]; });
    EXPECT_EQ(std::count(visits.begin(), visits.end(), 1), 1000);
    EXPECT_THROW(refpage::forEachIndex(10, 3, [](std::size_t i) {
                     if (i == 5) throw std::runtime_error("five");
                 }),
                 std::runtime_error);
}

}  // namespace

// ---- check over several pages, as a user runs it ----

namespace {

namespace fs = std::filesystem;
using testvalues::ToolRun;

/// The output without the run time "(0.01 s)".
std::string untimed(std::string const& output) {
    return std::regex_replace(output, std::regex(R"( \([0-9.]+ s\))"), "");
}

class CheckSetTest : public ::testing::Test {
protected:
    void SetUp() override {
        folder_ = fs::path(::testing::TempDir()) / fmt::format("check-set-{}", ::getpid());
        fs::remove_all(folder_);
        fs::create_directories(folder_);
    }
    void TearDown() override { fs::remove_all(folder_); }

    void write(std::string const& name, PageInput const& input) const { std::ofstream(folder_ / name) << *input.text; }
    std::string folder() const { return folder_.string(); }

    fs::path folder_;
};

TEST_F(CheckSetTest, EachKindOfFindingIsAWarningWithFileAndPointerAndCountedInTheSummary) {
    write("a.json", page("a", R"("SeeAlso": [{"Url": "ref/b.html"}, {"Url": "ref/gone.html"}])"));
    write("b.json", page("b"));
    write("c.json", page("a"));
    ToolRun const run = testvalues::refpage("check -j 2 " + folder());
    EXPECT_EQ(run.status, 0) << run.output;
    std::string const prefix = folder() + "/";
    EXPECT_NE(run.output.find(prefix + R"(a.json: warning: link "ref/gone.html" leads to no page of the set [/SeeAlso/1/Url])"),
              std::string::npos) << run.output;
    EXPECT_NE(run.output.find(prefix + R"(c.json: warning: Href "ref/a.html" is also the Href of ")"), std::string::npos);
    EXPECT_NE(run.output.find(prefix + R"(c.json: warning: entity name "pkg.a" is also documented by ")"), std::string::npos);
    EXPECT_NE(run.output.find("3 pages, 0 failed, 1 unresolved link, 1 shared Href, 1 duplicate name ("),
              std::string::npos) << run.output;

    ToolRun const strict = testvalues::refpage("check --strict " + folder());
    EXPECT_EQ(strict.status, 1) << strict.output;
    EXPECT_NE(strict.output.find(folder() + "/a.json: error: link \"ref/gone.html\" leads to no page of the set [/SeeAlso/1/Url]"),
              std::string::npos) << strict.output;
}

TEST_F(CheckSetTest, ACleanSetPassesStrictAndOnePageIsNotASet) {
    write("a.json", page("a", R"("SeeAlso": [{"Url": "ref/b.html#x"}, {"Url": "https://example.org/"}])"));
    write("b.json", page("b", R"("SeeAlso": [{"Url": "ref/gone.html"}])"));
    EXPECT_EQ(untimed(testvalues::refpage("check --strict " + folder() + "/a.json").output), "1 pages, 0 failed\n");
    fs::remove(folder_ / "b.json");
    write("b.json", page("b"));
    ToolRun const run = testvalues::refpage("check --strict " + folder());
    EXPECT_EQ(run.status, 0) << run.output;
    EXPECT_EQ(untimed(run.output), "2 pages, 0 failed, 0 unresolved links, 0 shared Hrefs, 0 duplicate names\n");
}

TEST_F(CheckSetTest, FourThreadsPrintWhatOneThreadPrints) {
    for (int i = 0; i < 40; ++i)
        write(fmt::format("p{:02}.json", i),
              i % 9 == 4 ? PageInput{"", "{\"Href\": [1]}"}
                         : page(fmt::format("p{}", i % 30), fmt::format(R"("SeeAlso": [{{"Url": "ref/p{}.html"}}])", i + 3)));
    ToolRun const one = testvalues::refpage("check -j 1 " + folder());
    ToolRun const four = testvalues::refpage("check -j 4 " + folder());
    EXPECT_EQ(one.status, 1);
    EXPECT_EQ(four.status, 1);
    EXPECT_EQ(untimed(four.output), untimed(one.output));
    EXPECT_NE(one.output.find("40 pages, 4 failed, "), std::string::npos) << one.output;
}

TEST(CheckCorpus, TheSampleSetHasBrokenSeeAlsoLinksAndNoDuplicateNames) {
    if (!fs::is_directory(REFPROP_CORPUS_DIR)) GTEST_SKIP() << "the sample corpus is absent: " << REFPROP_CORPUS_DIR;
    ToolRun const run = testvalues::refpage(std::string("check ") + REFPROP_CORPUS_DIR);
    EXPECT_EQ(run.status, 0);
    // Its 81 names given twice are each a class and its constructor on one page: not duplicates.
    EXPECT_NE(run.output.find("961 pages, 0 failed, 264 unresolved links, 0 shared Hrefs, 0 duplicate names ("),
              std::string::npos) << run.output.substr(run.output.size() - 300);
    EXPECT_NE(run.output.find("numpy.sort.json: warning: link \"reference/generated/numpy.ndarray.sort.html\" leads to no page of the set [/SeeAlso/0/Url]"),
              std::string::npos);
}

}  // namespace
