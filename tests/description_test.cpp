// Descriptions as CommonMark: what the check sees of them (links and images with their
// places) and what the site writes (markup built only by the renderer, page text only
// ever text, links resolved by the page, nesting bounded).
#include <gtest/gtest.h>

#include <refpage/format/Description.hpp>
#include <refpage/format/Loader.hpp>
#include <refpage/format/PageFiles.hpp>
#include <refpage/site/DescriptionHtml.hpp>
#include <string>

#include "support/HostTest.hpp"
#include "support/Files.hpp"

namespace {

using namespace refpage;
using testvalues::contains;

/// Links: "ref/..." resolve to "../ref/...", web URLs stay, everything else is text.
/// Images: "img/..." exist, others do not.
DescriptionLinks testLinks() {
    DescriptionLinks links;
    links.link = [](std::string_view target) -> std::optional<std::string> {
        if (target.starts_with("ref/")) return "../" + std::string(target);
        if (target.starts_with("https://")) return std::string(target);
        return std::nullopt;
    };
    links.image = [](std::string_view target) -> std::optional<std::string> {
        if (target.starts_with("img/")) return "../" + std::string(target);
        return std::nullopt;
    };
    links.headingIds = {"first", "second"};
    return links;
}

std::string html(std::string const& markdown) {
    return descriptionHtml(ParsedDescription::parse(markdown), testLinks());
}

TEST(DescriptionReferences, LinksAndImagesWithTheirPlacesInTextOrder) {
    auto const found = ParsedDescription::parse("Intro [sort](ref/sort.html#x).\n\n- item ![a *plot*](img/p.png)\n\n"
                                                "[ref]\n\n[ref]: ref/r.html\n")
                           .references();
    ASSERT_EQ(found.size(), 3u);
    EXPECT_EQ(found[0].target, "ref/sort.html#x");
    EXPECT_EQ(found[0].text, "sort");
    EXPECT_EQ(found[0].position.line, 1u);
    EXPECT_EQ(found[1].kind, DescriptionReference::Kind::Image);
    EXPECT_EQ(found[1].text, "a plot");
    EXPECT_EQ(found[1].position.line, 3u);
    EXPECT_EQ(found[2].target, "ref/r.html") << "a reference link resolves to its definition";
    EXPECT_EQ(found[2].position.line, 5u);
}

TEST(DescriptionHtml, RawHtmlAndUnsafeLinksAreText) {
    std::string const out = html("<script>alert(1)</script>\n\nA <b onclick=x>b</b> [js](javascript:alert(1)) "
                                 "[web](https://e.org/?a&b) [gone](elsewhere.html) <https://e.org>\n");
    EXPECT_FALSE(contains(out, "<script")) << out;
    EXPECT_FALSE(contains(out, "<b ")) << out;
    EXPECT_TRUE(contains(out, "&lt;script&gt;alert(1)&lt;/script&gt;"));
    EXPECT_TRUE(contains(out, "&lt;b onclick=x&gt;b&lt;/b&gt;"));
    EXPECT_TRUE(contains(out, R"(<span class="link-text">js</span>)"));
    EXPECT_TRUE(contains(out, R"(<a href="https://e.org/?a&amp;b" rel="external noopener noreferrer">web</a>)"));
    EXPECT_TRUE(contains(out, R"(<span class="link-text">gone</span>)"));
    EXPECT_FALSE(contains(out, "javascript:"));
}

TEST(DescriptionHtml, BlocksCodeTablesHeadingsAndImages) {
    std::string const out = html("# Notes\n\nSee [sort](ref/sort.html).\n\n```python extra\nx = 1 < 2\n```\n\n"
                                 "| a | b |\n|:--|--:|\n| `x_y` | *z* |\n\n1. one\n2. two\n\n## More\n\n"
                                 "![plot](img/p.png) ![gone](missing.png)\n\n> quote\n");
    EXPECT_TRUE(contains(out, R"(<h3 id="first">Notes<a class="anchor" href="#first")")) << out;
    EXPECT_TRUE(contains(out, R"(<h4 id="second">More)"));
    EXPECT_TRUE(contains(out, R"(<a href="../ref/sort.html">sort</a>)"));
    EXPECT_TRUE(contains(out, "<pre tabindex=\"0\"><code class=\"language-python\">x = 1 &lt; 2\n</code></pre>"));
    EXPECT_TRUE(contains(out, R"(<div class="table-scroll" tabindex="0" role="region" aria-label="Table"><table>)"));
    EXPECT_TRUE(contains(out, R"(<thead><tr><th scope="col" class="align-left">a</th><th scope="col" class="align-right">b</th></tr></thead>)"));
    EXPECT_TRUE(contains(out, R"(<td class="align-left"><code>x_y</code></td><td class="align-right"><em>z</em></td>)"));
    EXPECT_TRUE(contains(out, "<ol>\n<li>one</li>\n<li>two</li>\n</ol>")) << "a tight list has no paragraphs";
    EXPECT_TRUE(contains(out, R"(<img src="../img/p.png" alt="plot" loading="lazy">)"));
    EXPECT_TRUE(contains(out, R"(<span class="missing-image">gone</span>)")) << "never a broken image";
    EXPECT_TRUE(contains(out, "<blockquote>\n<p>quote</p>\n</blockquote>"));
}

TEST(DescriptionHtml, DeepNestingKeepsItsTextWithoutItsElements) {
    std::string const deep = std::string(5000, '>') + " deep\n\n" + std::string(3000, '[') + "x" + std::string(3000, ']');
    std::string const out = html(deep);
    EXPECT_TRUE(contains(out, "deep"));
    std::size_t quotes = 0;
    for (std::size_t at = out.find("<blockquote>"); at != std::string::npos; at = out.find("<blockquote>", at + 1)) ++quotes;
    EXPECT_LE(quotes, maxDescriptionDepth);
    EXPECT_EQ(quotes, static_cast<std::size_t>(std::count(out.begin(), out.end(), '<') > 0 ? quotes : 0));
    std::size_t closes = 0;
    for (std::size_t at = out.find("</blockquote>"); at != std::string::npos; at = out.find("</blockquote>", at + 1)) ++closes;
    EXPECT_EQ(quotes, closes) << "every element opened is closed";
}

TEST(DescriptionHtml, TextBeyondTheLimitIsOneLiteralBlock) {
    std::string const text = "# not a heading\n" + std::string(maxCommonMarkBytes, 'x');
    ParsedDescription const parsed = ParsedDescription::parse(text);
    EXPECT_FALSE(parsed.isCommonMark());
    std::string const out = descriptionHtml(parsed, testLinks());
    EXPECT_TRUE(out.starts_with("<pre tabindex=\"0\"><code># not a heading\n")) << out.substr(0, 60);
}

TEST(InlineHtml, OneLineOfInlinesWithoutBlockElements) {
    auto const links = testLinks();
    EXPECT_EQ(inlineHtml("Plain text, with - dashes & = signs", links), "Plain text, with - dashes &amp; = signs");
    EXPECT_EQ(inlineHtml("Use `x` with *care*", links), "Use <code>x</code> with <em>care</em>");
    EXPECT_EQ(inlineHtml("1. Not a list\n\n- item", links), "1. Not a list item") << "numbers stay";
    EXPECT_EQ(inlineHtml("# Title <i>", links), "Title &lt;i&gt;");
}

class PageFilesTest : public HostTest {};

TEST_F(PageFilesTest, TheThumbnailAndRelativeImagesWithTheirPointersAndPlaces) {
    auto result = loadPage(R"({"Href": "a.html", "AppThumbnail": {"FileRef": "images/a.png", "Alt": "A"},
        "Description": "Intro\n\n![plot](images/p.png) ![web](https://e.org/x.png)\n![up](../x.png) ![q](i.png?v=1)\n"})",
                           "a.json");
    ASSERT_TRUE(result.ok());
    auto const files = filesOf(nativePage(result.page.get()));
    ASSERT_EQ(files.size(), 4u) << "external images are not the doc set's files";
    EXPECT_EQ(files[0].path, "images/a.png");
    EXPECT_EQ(files[0].pointer, "/AppThumbnail/FileRef");
    EXPECT_TRUE(files[0].safe);
    EXPECT_EQ(files[1].path, "images/p.png");
    EXPECT_EQ(files[1].pointer, "/Description");
    EXPECT_EQ(files[1].position.line, 3u);
    EXPECT_EQ(files[1].position.column, 1u);
    EXPECT_FALSE(files[2].safe) << "a path out of the doc set";
    EXPECT_FALSE(files[3].safe) << "a query is no file";
    result = {};
}

}  // namespace
