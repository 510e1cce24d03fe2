// The page generator: the same seed gives the same bytes, every page it makes
// loads and checks cleanly, doc sets link within themselves and repeat names by
// the shares asked for, and the sizes follow the real reference pages.
#include "support/Files.hpp"
#include "support/HostTest.hpp"
#include "support/TestPages.hpp"

#include <pagegen/PageGen.hpp>
#include <refpage/format/Check.hpp>

#include <nlohmann/json.hpp>
#include <utf8.h>

#include <algorithm>
#include <fstream>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace {

using nlohmann::json;

/// Mean texts per page, and mean and largest UTF-16 bytes of text per page, over page texts.
struct SetSize {
    double meanTexts = 0;
    double meanBytes = 0;
    std::size_t largestBytes = 0;
};

SetSize setSize(std::vector<std::string> const& pages) {
    SetSize size;
    for (std::string const& page : pages) {
        std::size_t bytes = 0;
        json const flat = json::parse(page).flatten();
        for (auto const& [pointer, value] : flat.items()) {
            if (!value.is_string()) continue;
            size.meanTexts += 1;
            bytes += 2 * utf8::utf8to16(value.get_ref<std::string const&>()).size();
        }
        size.meanBytes += static_cast<double>(bytes);
        size.largestBytes = std::max(size.largestBytes, bytes);
    }
    size.meanTexts /= static_cast<double>(pages.size());
    size.meanBytes /= static_cast<double>(pages.size());
    return size;
}

std::vector<std::string> textsOf(std::vector<pagegen::GeneratedPage> const& pages) {
    std::vector<std::string> texts;
    for (auto const& page : pages) texts.push_back(page.json);
    return texts;
}

TEST(PageGenerator, TheSameSeedAndOptionsGiveTheSameBytes) {
    pagegen::DocSetOptions options{.seed = 7, .pages = 60, .brokenLinks = 0.1, .duplicateNames = 0.1};
    std::vector<std::string> const first = textsOf(pagegen::generateDocSet(options));
    ASSERT_EQ(first.size(), 60u);
    EXPECT_EQ(textsOf(pagegen::generateDocSet(options)), first);
    options.seed = 8;
    EXPECT_NE(textsOf(pagegen::generateDocSet(options)), first);
    EXPECT_EQ(pagegen::generatePage(3, pagegen::Shape::Full), pagegen::generatePage(3, pagegen::Shape::Full));
    EXPECT_NE(pagegen::generatePage(3), pagegen::generatePage(4));
}

using GeneratedPages = HostTest;

TEST_F(GeneratedPages, EveryShapeLoadsWithoutWarningsAndPassesTheCheck) {
    std::vector<std::string> texts = textsOf(pagegen::generateDocSet({.seed = 11, .pages = 150, .nonAscii = 0.2}));
    for (auto const shape : {pagegen::Shape::Drawn, pagegen::Shape::Full, pagegen::Shape::Largest})
        texts.push_back(pagegen::generatePage(5, shape));
    for (std::string const& text : texts) {
        refpage::CheckReport const check = refpage::checkPage(text, "generated.json", {.strict = true});
        ASSERT_TRUE(check.passed()) << check.failures.front().describe() << "\n" << text;
        EXPECT_TRUE(check.warnings.empty());
    }
}

TEST(PageGenerator, FullPagesFillEveryKeyOfEveryRecord) {
    for (std::uint64_t seed = 1; seed <= 5; ++seed) {
        json const flat = json::parse(pagegen::generatePage(seed, pagegen::Shape::Full)).flatten();
        for (auto const& [pointer, value] : flat.items())
            EXPECT_FALSE(value == "" || value.is_null()) << pointer << " is empty (an empty list flattens to null)";
    }
}

/// The share of links (see-also Urls and input Hrefs naming another page) that lead to no page of the set.
double brokenShare(std::vector<pagegen::GeneratedPage> const& pages) {
    std::set<std::string> hrefs;
    for (auto const& page : pages) hrefs.insert(page.href);
    std::size_t links = 0, broken = 0;
    auto const count = [&](std::string const& link) {
        if (link.empty() || link[0] == '#') return;
        ++links;
        broken += hrefs.contains(link.substr(0, link.find('#'))) ? 0 : 1;
    };
    for (auto const& page : pages) {
        json const text = json::parse(page.json);
        for (json const& seeAlso : text["SeeAlso"]) count(seeAlso["Url"]);
        for (json const& group : text["InputGroups"])
            for (json const& input : group["Inputs"]) count(input["Href"]);
    }
    EXPECT_GT(links, pages.size());
    return static_cast<double>(broken) / static_cast<double>(links);
}

TEST(PageGenerator, DocSetLinksStayInsideTheSetButForTheBrokenShare) {
    EXPECT_EQ(brokenShare(pagegen::generateDocSet({.seed = 3, .pages = 400})), 0.0);
    EXPECT_NEAR(brokenShare(pagegen::generateDocSet({.seed = 3, .pages = 400, .brokenLinks = 0.25})), 0.25, 0.05);
}

/// Repeated names, repeated Hrefs and deprecated pages of a set; checks what holds of every set.
std::vector<std::size_t> repeats(pagegen::DocSetOptions const& options) {
    std::vector<pagegen::GeneratedPage> const pages = pagegen::generateDocSet(options);
    std::set<std::string> names, hrefs, files, leaves;
    std::size_t deprecated = 0;
    for (auto const& page : pages) {
        EXPECT_EQ(page.name.rfind(options.package + ".", 0), 0u) << page.name;
        EXPECT_TRUE(page.fileName.ends_with(".json") && files.insert(page.fileName).second) << page.fileName;
        names.insert(page.name);
        hrefs.insert(page.href);
        leaves.insert(page.name.substr(page.name.rfind('.') + 1));
        json const text = json::parse(page.json);
        EXPECT_EQ(text["Href"], page.href);
        EXPECT_EQ(text["RefEntities"][0]["Name"], page.name);
        deprecated += text["DeprecationStatus"] != "current" ? 1 : 0;
    }
    EXPECT_LT(leaves.size(), names.size()) << "last components repeat across submodules";
    return {pages.size() - names.size(), pages.size() - hrefs.size(), deprecated};
}

TEST(PageGenerator, DocSetNamesAreDottedUniqueFilesAndRepeatOnlyWhenAsked) {
    std::vector<std::size_t> const none = repeats({.seed = 5, .pages = 300, .package = "lib"});
    EXPECT_EQ(none[0], 0u);
    EXPECT_EQ(none[1], 0u);
    EXPECT_LE(none[2], 2u);  // only the set's full and largest pages draw any status
    std::vector<std::size_t> const some =
        repeats({.seed = 5, .pages = 300, .duplicateNames = 0.1, .duplicateHrefs = 0.1, .deprecated = 0.2});
    EXPECT_NEAR(static_cast<double>(some[0]), 30, 15);
    EXPECT_GT(some[1], some[0]);  // a repeated name repeats its Href too
    EXPECT_NEAR(static_cast<double>(some[2]), 60, 20);
}

TEST(PageGenerator, SizesFollowRealReferencePagesAndTheSharedCorpusWhenItIsThere) {
    SetSize const size = setSize(textsOf(pagegen::generateDocSet({.seed = 1, .pages = 1000})));
    EXPECT_NEAR(size.meanBytes, 3500, 400);
    EXPECT_NEAR(size.meanTexts, 46, 6);
    EXPECT_GT(static_cast<double>(size.largestBytes), 7 * size.meanBytes);
    EXPECT_LT(static_cast<double>(size.largestBytes), 14 * size.meanBytes);

    std::optional<std::filesystem::path> const corpus = testvalues::corpusFolder();
    if (!corpus) GTEST_SKIP() << testvalues::noCorpus;
    std::vector<std::string> texts;
    for (auto const& entry : std::filesystem::directory_iterator(*corpus)) {
        if (entry.path().extension() == ".json") texts.push_back(testvalues::readFile(entry.path()));
    }
    ASSERT_GT(texts.size(), 100u);
    SetSize const real = setSize(texts);
    SetSize const generated = setSize(textsOf(pagegen::generateDocSet({.seed = 1, .pages = texts.size()})));
    EXPECT_NEAR(generated.meanBytes / real.meanBytes, 1.0, 0.15);
    EXPECT_NEAR(generated.meanTexts / real.meanTexts, 1.0, 0.15);
    EXPECT_NEAR(static_cast<double>(generated.largestBytes) / static_cast<double>(real.largestBytes), 1.5, 0.75);
}

}  // namespace
