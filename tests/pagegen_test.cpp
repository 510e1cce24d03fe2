// The page generator: the same seed gives the same bytes, every page it makes
// loads and checks cleanly, doc sets link within themselves by the shares asked
// for, and the sizes follow the real reference pages.
#include "support/HostTest.hpp"
#include "support/TestPages.hpp"

#include <pagegen/PageGen.hpp>
#include <refpage/PageCheck.hpp>

#include <nlohmann/json.hpp>

#include <algorithm>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace {

using nlohmann::json;

/// Texts in a page and their size in UTF-16 bytes.
struct TextSize {
    std::size_t texts = 0;
    std::size_t utf16Bytes = 0;
};

void addTexts(json const& value, TextSize& size) {
    if (value.is_string()) {
        ++size.texts;
        for (unsigned char const c : value.get_ref<std::string const&>()) {
            if ((c & 0xC0) != 0x80) size.utf16Bytes += 2;  // one unit per character...
            if ((c & 0xF8) == 0xF0) size.utf16Bytes += 2;  // ...two beyond the BMP
        }
    } else if (value.is_structured()) {
        for (json const& element : value) addTexts(element, size);
    }
}

TextSize textSize(std::string const& text) {
    TextSize size;
    addTexts(json::parse(text), size);
    return size;
}

/// Mean and largest UTF-16 size and mean text count of a list of page texts.
struct SetSize {
    double meanBytes = 0;
    double meanTexts = 0;
    std::size_t largestBytes = 0;
};

template <class Texts>
SetSize setSize(Texts const& texts) {
    SetSize size;
    std::size_t count = 0;
    for (std::string const& text : texts) {
        TextSize const page = textSize(text);
        size.meanBytes += static_cast<double>(page.utf16Bytes);
        size.meanTexts += static_cast<double>(page.texts);
        size.largestBytes = std::max(size.largestBytes, page.utf16Bytes);
        ++count;
    }
    size.meanBytes /= static_cast<double>(count);
    size.meanTexts /= static_cast<double>(count);
    return size;
}

std::vector<std::string> textsOf(std::vector<pagegen::GeneratedPage> const& pages) {
    std::vector<std::string> texts;
    for (auto const& page : pages) texts.push_back(page.json);
    return texts;
}

/// Every link of a page: see-also Urls and input Hrefs that name another page, without their #fragment.
std::vector<std::string> linksOf(std::string const& text) {
    std::vector<std::string> links;
    auto const add = [&](std::string const& href) {
        if (href.empty() || href[0] == '#') return;
        links.push_back(href.substr(0, href.find('#')));
    };
    json const page = json::parse(text);
    for (json const& seeAlso : page["SeeAlso"]) add(seeAlso["Url"]);
    for (json const& group : page["InputGroups"])
        for (json const& input : group["Inputs"]) add(input["Href"]);
    return links;
}

TEST(PageGenerator, TheSameSeedAndOptionsGiveTheSameBytes) {
    pagegen::DocSetOptions options{.seed = 7, .pages = 60, .brokenLinks = 0.1, .duplicateNames = 0.1};
    std::vector<pagegen::GeneratedPage> const first = pagegen::generateDocSet(options);
    std::vector<pagegen::GeneratedPage> const second = pagegen::generateDocSet(options);
    ASSERT_EQ(first.size(), 60u);
    EXPECT_EQ(textsOf(first), textsOf(second));
    options.seed = 8;
    EXPECT_NE(textsOf(pagegen::generateDocSet(options)), textsOf(first));
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
    std::set<std::string> emptyPaths;
    for (std::uint64_t seed = 1; seed <= 5; ++seed) {
        json const flat = json::parse(pagegen::generatePage(seed, pagegen::Shape::Full)).flatten();
        for (auto const& [pointer, value] : flat.items())
            if (value == "" || value == json::array() || value == json::object()) emptyPaths.insert(pointer);
    }
    EXPECT_TRUE(emptyPaths.empty()) << *emptyPaths.begin();
}

TEST(PageGenerator, DocSetLinksStayInsideTheSetButForTheBrokenShare) {
    auto const brokenShare = [](double broken) {
        std::vector<pagegen::GeneratedPage> const pages = pagegen::generateDocSet({.seed = 3, .pages = 400, .brokenLinks = broken});
        std::set<std::string> hrefs;
        for (auto const& page : pages) hrefs.insert(page.href);
        std::size_t links = 0;
        std::size_t broken_ = 0;
        for (auto const& page : pages)
            for (std::string const& link : linksOf(page.json)) {
                ++links;
                if (!hrefs.contains(link)) ++broken_;
            }
        EXPECT_GT(links, 400u);
        return static_cast<double>(broken_) / static_cast<double>(links);
    };
    EXPECT_EQ(brokenShare(0.0), 0.0);
    EXPECT_NEAR(brokenShare(0.25), 0.25, 0.05);
}

TEST(PageGenerator, DocSetNamesAreDottedAndRepeatOnlyWhenAsked) {
    auto const repeats = [](pagegen::DocSetOptions const& options) {
        std::vector<pagegen::GeneratedPage> const pages = pagegen::generateDocSet(options);
        std::set<std::string> names, hrefs, files, leaves;
        std::size_t deprecated = 0;
        for (auto const& page : pages) {
            EXPECT_EQ(page.name.rfind(options.package + ".", 0), 0u) << page.name;
            EXPECT_EQ(page.fileName.substr(page.fileName.size() - 5), ".json");
            EXPECT_TRUE(files.insert(page.fileName).second) << "file names are unique: " << page.fileName;
            names.insert(page.name);
            hrefs.insert(page.href);
            leaves.insert(page.name.substr(page.name.rfind('.') + 1));
            json const text = json::parse(page.json);
            EXPECT_EQ(text["Href"], page.href);
            EXPECT_EQ(text["RefEntities"][0]["Name"], page.name);
            if (text["DeprecationStatus"] != "current") ++deprecated;
        }
        EXPECT_LT(leaves.size(), names.size()) << "last components repeat across submodules";
        return std::vector<std::size_t>{pages.size() - names.size(), pages.size() - hrefs.size(), deprecated};
    };
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

TEST(PageGenerator, SizesFollowRealReferencePages) {
    SetSize const size = setSize(textsOf(pagegen::generateDocSet({.seed = 1, .pages = 1000})));
    EXPECT_NEAR(size.meanBytes, 3500, 400);
    EXPECT_NEAR(size.meanTexts, 46, 6);
    EXPECT_GT(static_cast<double>(size.largestBytes), 7 * size.meanBytes);
    EXPECT_LT(static_cast<double>(size.largestBytes), 14 * size.meanBytes);
}

TEST(PageGenerator, SizesMatchTheSharedCorpusWhenItIsThere) {
    std::optional<std::filesystem::path> const corpus = testvalues::corpusFolder();
    if (!corpus) GTEST_SKIP() << testvalues::noCorpus;
    std::vector<std::string> texts;
    for (auto const& entry : std::filesystem::directory_iterator(*corpus)) {
        if (entry.path().extension() != ".json") continue;
        std::ifstream file(entry.path(), std::ios::binary);
        std::ostringstream text;
        text << file.rdbuf();
        texts.push_back(text.str());
    }
    ASSERT_GT(texts.size(), 100u);
    SetSize const real = setSize(texts);
    SetSize const generated = setSize(textsOf(pagegen::generateDocSet({.seed = 1, .pages = texts.size()})));
    EXPECT_NEAR(generated.meanBytes / real.meanBytes, 1.0, 0.15);
    EXPECT_NEAR(generated.meanTexts / real.meanTexts, 1.0, 0.15);
    EXPECT_NEAR(static_cast<double>(generated.largestBytes) / static_cast<double>(real.largestBytes), 1.5, 0.75);
}

}  // namespace
