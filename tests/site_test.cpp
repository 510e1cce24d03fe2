// The HTML site: where pages go, how links between them are written, how page text
// becomes HTML, and what a whole build writes.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <refpage/format/Loader.hpp>
#include <refpage/support/Escape.hpp>
#include <refpage/support/Text.hpp>
#include <refpage/site/Site.hpp>
#include <refpage/site/DocsetBundle.hpp>
#include <refpage/site/Html.hpp>
#include <refpage/site/Paths.hpp>
#include <string>
#include <vector>

#include "support/HostTest.hpp"
#include "support/Files.hpp"
#include "support/SetPages.hpp"

namespace {

using namespace refpage;

using testvalues::contains;
using testvalues::fileTree;
using testvalues::pageAt;
using testvalues::readFile;

TEST(SitePaths, UnsafeHrefsAreRefused) {
    for (char const* href : {"", "/etc/x.html", "../x.html", "a/../x.html", "a//x.html", "./x.html", "a\\x.html",
                             "a\x01.html", "x.html?q", "c:x.html", "x.json", "index.html", "INDEX.html",
                             "_site/style.html", "a/"})
        EXPECT_FALSE(safePagePath(href)) << href;
    EXPECT_EQ(safePagePath("reference/generated/numpy.sort.html#top"), "reference/generated/numpy.sort.html");
    EXPECT_EQ(safePagePath("päge 1.HTM"), "päge 1.HTM");
    EXPECT_FALSE(safePagePath(std::string(300, 'x') + ".html"));
}

TEST(SitePaths, ClashingAndUnusableHrefsGetDistinctDerivedPaths) {
    auto const assigned = assignPagePaths({"a/x.html", "A/X.html", "", "pages/b.html", "../up.html"},
                                          {"x", "x", "<b>", "b", ""});
    EXPECT_EQ(assigned.paths, (std::vector<std::string>{"a/x.html", "pages/x.html", "pages/b-2.html",
                                                        "pages/b.html", "pages/page.html"}));
    EXPECT_EQ(assigned.derived, (std::vector<std::size_t>{1, 2, 4}));
}

TEST(SitePaths, RelativeUrlsClimbOnlyOutOfTheFoldersNotShared) {
    EXPECT_EQ(relativeUrl("reference/generated/a.html", "reference/generated/b.html"), "b.html");
    EXPECT_EQ(relativeUrl("reference/generated/a.html", "reference/c.html"), "../c.html");
    EXPECT_EQ(relativeUrl("reference/generated/a.html", "other/z.html"), "../../other/z.html");
    EXPECT_EQ(relativeUrl("index.html", "ref/a b#?.html"), "ref/a%20b%23%3F.html");
    EXPECT_EQ(relativeUrl("refx/a.html", "ref/b.html"), "../ref/b.html");
    EXPECT_EQ(percentEncode("a/é", true), "a%2F%C3%A9");
}

TEST(SiteHtml, EscapingLeavesNoMarkupAndNoControlCharacters) {
    EXPECT_EQ(escapeHtml(R"(<a href="x" onclick='y'>&amp;</a>)"),
              "&lt;a href=&quot;x&quot; onclick=&#39;y&#39;&gt;&amp;amp;&lt;/a&gt;");
    EXPECT_EQ(escapeHtml("a\x1b[31m\x7f\tb\n"), "a\xef\xbf\xbd[31m\xef\xbf\xbd\tb\n");
    EXPECT_EQ(escapeHtml("\xc2\x85 \xff \xed\xa0\x80 \xc3\xa9 \xf0\x9f\x98\x80"),
              "\xef\xbf\xbd \xef\xbf\xbd \xef\xbf\xbd\xef\xbf\xbd\xef\xbf\xbd \xc3\xa9 \xf0\x9f\x98\x80");
}

TEST(SiteHtml, UnpairedSurrogatesBecomeReplacementCharacters) {
    std::u16string const text{u'a', char16_t{0xd800}, u'b', char16_t{0xdc00}, char16_t{0xd83d}, char16_t{0xde00},
                              char16_t{0xe9}, char16_t{0xd83d}};
    EXPECT_EQ(utf8(text), "a\xef\xbf\xbd" "b\xef\xbf\xbd\xf0\x9f\x98\x80\xc3\xa9\xef\xbf\xbd");
}

TEST(SiteHtml, OnlyHttpAndHttpsUrlsAreExternalLinks) {
    for (char const* url : {"https://example.org/a?b=1&c", "HTTP://example.org"}) EXPECT_TRUE(isWebUrl(url)) << url;
    for (char const* url : {"javascript:alert(1)", "JavaScript://%0aalert(1)", "data:text/html,x", "//example.org",
                            "http:/x", "https://exa mple.org", "https://a\x01", "ftp://x", "http://"})
        EXPECT_FALSE(isWebUrl(url)) << url;
}

TEST(SiteDocset, InfoPlistEscapesTheNameAndEnablesScriptsAndTheFallback) {
    std::string const plist = docsetInfoPlist("A&B <docs>");
    EXPECT_TRUE(contains(plist, "<key>CFBundleName</key>\n\t<string>A&amp;B &lt;docs&gt;</string>"));
    EXPECT_TRUE(contains(plist, "<key>CFBundleIdentifier</key>\n\t<string>abdocs</string>"));
    EXPECT_TRUE(contains(plist, "<key>isJavaScriptEnabled</key>\n\t<true/>"));
    EXPECT_FALSE(contains(plist, "DashDocSetFallbackURL"));
    EXPECT_TRUE(contains(docsetInfoPlist("x", "https://e.org/a?b&c"),
                         "<key>DashDocSetFallbackURL</key>\n\t<string>https://e.org/a?b&amp;c</string>"));
    EXPECT_EQ(docsetIdentifier("<>"), "docset");
    for (auto const& icon : docsetIcons()) EXPECT_TRUE(icon.bytes.starts_with("\x89PNG\r\n")) << icon.file;
}

TEST(SiteTemplates, APartialIncludingItselfIsAnErrorNotACrash) {
    testvalues::ScratchFolder const folder;
    folder.write("templates/link.mustache", "<a>{{> link}}</a>");
    PageErrors errors;
    SiteTemplates const templates = SiteTemplates::load(folder / "templates", errors);
    ASSERT_EQ(errors.size(), 1u);
    EXPECT_TRUE(contains(errors[0].message, "partial \"link\" is nested more than 8 partials deep")) << errors[0].message;
    EXPECT_TRUE(templates.compiled()) << "the defaults stand in";
    folder.write("templates/search.mustache", "{{#a}}{{#a}}{{#a}}{{#a}}{{#a}}{{#a}}{{#a}}{{#a}}{{#a}}{{#a}}"
                                              "{{#a}}{{#a}}{{#a}}{{#a}}{{#a}}{{#a}}{{#a}}{{#a}}{{#a}}{{#a}}"
                                              "{{#a}}{{#a}}{{#a}}{{#a}}{{#a}}{{#a}}{{#a}}{{#a}}{{#a}}{{#a}}"
                                              "{{#a}}{{#a}}{{#a}}");
    std::filesystem::remove(folder / "templates/link.mustache");
    errors.clear();
    SiteTemplates::load(folder / "templates", errors);
    ASSERT_EQ(errors.size(), 1u);
    EXPECT_TRUE(contains(errors[0].message, "sections nest more than 32 deep")) << errors[0].message;
}

/// Pages in memory, "page<N>.json" in the order added, loaded as a doc set through the host.
class SiteBuild : public HostTest {
protected:
    void add(std::string const& json) {
        inputs.push_back(PageInput::memory("page" + std::to_string(inputs.size()) + ".json", json));
    }
    LoadedSet loaded() const {
        LoadedSet set = loadDocSet(inputs, 1, {});
        for (auto const& said : set.diagnostics) EXPECT_TRUE(said.errors.empty()) << said.errors.front().describe();
        return set;
    }
    std::filesystem::path folder(std::string const& name) const { return scratch_ / name; }
    std::vector<PageInput> inputs;

private:
    testvalues::ScratchFolder scratch_;
};

TEST_F(SiteBuild, LinksAreWrittenFromTheirOwnPageAndUnresolvedOnesAreText) {
    add(pageAt("p.a", "ref/gen/a.html",
             R"j(, "SeeAlso": [{"Name": "b", "Url": "ref/b.html#x y"}, {"Name": "gone", "Url": "ref/none.html"},
                             {"Name": "js", "Url": "javascript:alert(1)"}, {"Name": "web", "Url": "https://e.org/?a&b"}],
                 "Outputs": [{"Name": "o", "Href": "#p.a-o"}, {"Name": "o2", "Href": "#p.a-o"}],
                 "Examples": [{"Title": "Ex", "Url": "ref/gen/a.html#example-1"}],
                 "Description": "See [b](ref/b.html), [x](#p.a-o) and [gone](ref/gone.html).")j"));
    add(pageAt("p.b", "ref/b.html"));
    std::vector<std::string> const paths{"ref/gen/a.html", "ref/b.html"};
    LoadedSet const set = loaded();
    LoadResult const a = loadInput(inputs[0]);
    RenderedPage const out =
        renderSitePage(nativePage(a.page.get()), {0, paths[0], &paths, &set.set, "T", "en"}, SiteTemplates::defaults());
    EXPECT_TRUE(contains(out.html, R"(<a href="../b.html#x%20y">b</a>)"));
    EXPECT_TRUE(contains(out.html, R"(<span class="unresolved">gone</span>)"));
    EXPECT_TRUE(contains(out.html, R"j(<span class="text">js</span>)j"));
    EXPECT_TRUE(contains(out.html, R"(<a href="https://e.org/?a&amp;b" rel="external noopener noreferrer">web</a>)"));
    EXPECT_TRUE(contains(out.html, R"(<tr id="p.a-o"><th scope="row"><a href="#p.a-o"><span class="w">o</span><wbr></a>)"));
    EXPECT_TRUE(contains(out.html, R"(<tr id="output-o2"><th scope="row"><a href="#p.a-o"><span class="w">o2</span><wbr></a>)"))
        << "ids stay unique";
    EXPECT_TRUE(contains(out.html, R"(<div class="example" id="example-1">)"));
    EXPECT_TRUE(contains(out.html, R"(href="../../_site/style.css")"));
    EXPECT_TRUE(contains(out.html, R"(See <a href="../b.html">b</a>, <a href="#p.a-o">x</a> and <span class="link-text">gone</span>.)"));
    EXPECT_EQ(out.unresolved, (std::vector<std::string>{"/Description", "/SeeAlso/1/Url"}));
}

TEST_F(SiteBuild, DocsetPagesHaveNoSiteHeaderAndCarryTableOfContentsAnchors) {
    add(R"j({"Href": "ref/k.html", "RefEntities": [{"Name": "p.K", "RefEntityType": "class"},
                                                  {"Name": "p.K.go", "RefEntityType": "method"}],
             "ClassPropertyGroups": [{"Properties": [{"Name": "T", "Href": "#p.K-T"}]}],
             "AppThumbnail": {"FileRef": "img/k.png", "Alt": "A plot"}})j");
    std::vector<std::string> const paths{"ref/k.html"};
    LoadedSet const set = loaded();
    LoadResult const k = loadInput(inputs[0]);
    SiteAssetCheck const none = [](std::string_view) { return false; };
    SitePageView view{0, paths[0], &paths, &set.set, "T", "en", nullptr, &none, true};
    std::string const html = renderSitePage(nativePage(k.page.get()), view, SiteTemplates::defaults()).html;
    EXPECT_FALSE(contains(html, "site-header"));
    EXPECT_FALSE(contains(html, "search.js"));
    EXPECT_TRUE(contains(html, R"(<a class="dashAnchor" name="//apple_ref/cpp/Property/T"></a>)"));
    EXPECT_TRUE(contains(html, R"(<dd id="p.K.go"><a class="dashAnchor" name="//apple_ref/cpp/Method/p.K.go"></a>)"));
    EXPECT_TRUE(contains(html, R"(<a class="dashAnchor" name="//apple_ref/cpp/Section/Properties"></a>)"));
    EXPECT_TRUE(contains(html, R"(<figcaption class="missing-image">A plot</figcaption>)")) << "no broken image";
    view.docset = false;
    EXPECT_FALSE(contains(renderSitePage(nativePage(k.page.get()), view, SiteTemplates::defaults()).html, "dashAnchor"));
}

TEST_F(SiteBuild, SidebarListsAtMostItsLimitAroundThePage) {
    std::vector<SitePageSummary> summaries;
    for (int i = 0; i < 100; ++i)
        summaries.push_back({"p.n" + std::to_string(100 + i), "n" + std::to_string(i) + ".html", "p", "", false});
    summaries.push_back({"q.only", "q.html", "q", "", false});
    SiteNavigation const navigation(summaries);
    auto const around = navigation.sidebarOf(50);
    EXPECT_EQ(around.size(), sidebarPageLimit);
    EXPECT_EQ(around.front(), 30u);
    EXPECT_EQ(navigation.sidebarOf(0).front(), 0u);
    EXPECT_EQ(navigation.sidebarOf(99).back(), 99u);
    EXPECT_EQ(navigation.sidebarOf(100), std::vector<std::size_t>{100});
    EXPECT_EQ(navigation.packages()[navigation.packageOf(100)].id, "package-q");
}

TEST_F(SiteBuild, SameOutputOnAnyNumberOfThreadsAndFromReplacedTemplates) {
    for (int i = 0; i < 12; ++i)
        add(pageAt("p.n" + std::to_string(i), i == 3 ? "../evil.html" : "ref/n" + std::to_string(i % 10) + ".html",
                 R"(, "Purpose": "é <i>", "SeeAlso": [{"Name": "next", "Url": "ref/n)" + std::to_string(i + 1) +
                     R"(.html"}])"));
    SiteOptions options;
    auto const oneFolder = folder("one");
    options.output = oneFolder;
    LoadedSet const set = loaded();
    SiteReport const one = buildSite(set, inputs, options);
    options.output = folder("four");
    options.jobs = 4;
    SiteReport const four = buildSite(set, inputs, options);
    EXPECT_TRUE(one.ok());
    EXPECT_EQ(fileTree(options.output), fileTree(oneFolder));
    ASSERT_EQ(one.warnings.size(), 7u);  // page 3's Href, pages 10 and 11's clash, links to n3, n10, n11, n12
    EXPECT_EQ(one.warnings[0].describe(Severity::Warning),
              R"(page3.json: warning: Href "../evil.html" is not a safe relative .html path; written as )"
              R"("pages/p.n3.html" [/Href])");
    EXPECT_EQ(one.warnings[1].describe(Severity::Warning),
              R"(page10.json: warning: another page has the same Href; written as "pages/p.n10.html" [/Href])");
    EXPECT_EQ(one.unresolvedLinks, 4u);
    EXPECT_EQ(one.paths, four.paths);
    EXPECT_TRUE(std::filesystem::exists(options.output / "pages" / "p.n3.html"));
    EXPECT_FALSE(std::filesystem::exists(options.output.parent_path() / "evil.html"));

    auto const templates = folder("templates");
    std::filesystem::create_directories(templates);
    std::ofstream(templates / "page.mustache") << "<p>{{title}} {{purpose}}</p>{{{description}}}";
    PageErrors errors;
    options.templates = SiteTemplates::load(templates, errors);
    options.output = folder("custom");
    EXPECT_TRUE(buildSite(set, inputs, options).ok());
    EXPECT_TRUE(errors.empty());
    EXPECT_EQ(readFile(options.output / "ref" / "n0.html"), "<p>p.n0 é &lt;i&gt;</p>");
    EXPECT_TRUE(contains(readFile(options.output / "ref" / "n1.html"), "<p>p.n1 é &lt;i&gt;</p>"))
        << "compiled once, rendered for every page";
    EXPECT_TRUE(contains(readFile(options.output / "index.html"), "<!DOCTYPE html>"));
    SiteTemplates::load(templates / "missing", errors);
    EXPECT_EQ(errors.size(), 1u);
}

TEST_F(SiteBuild, IndexGroupsByPackageThenTitleIgnoringCase) {
    add(R"({"Href": "b.html", "RefEntities": [{"Name": "beta"}], "PackageName": "Zed"})");
    add(R"({"Href": "a.html", "RefEntities": [{"Name": "Alpha"}], "PackageName": "zed", "DeprecationStatus": "warn"})");
    add(R"({"Href": "c.html", "RefEntities": [{"Name": "gamma"}]})");
    add(R"({"Href": "d.html", "RefEntities": [{"Name": "delta"}], "PackageName": "abc"})");
    SiteNavigation const navigation(siteSummaries(loaded().set, {"b.html", "a.html", "c.html", "d.html"}));
    std::string const html = renderSiteIndex({&navigation, "T", "en", ""}, SiteTemplates::defaults());
    auto at = [&](std::string const& part) { return html.find(part); };
    EXPECT_LT(at(R"(<h2 id="package-abc-title">abc)"), at(R"(<h2 id="package-Zed-title">Zed)"));
    EXPECT_LT(at(R"(<h2 id="package-Zed-title">Zed)"), at(R"(<h2 id="package-zed-title">zed)"));
    EXPECT_LT(at(R"(<h2 id="package-zed-title">zed)"), at(R"(<h2 id="package-other-title">Other pages)"));
    EXPECT_TRUE(contains(html, R"(<li><a href="#package-Zed">Zed</a> <span class="count">(1)</span></li>)"))
        << "a jump link per package";
    EXPECT_TRUE(contains(html, R"(<li class="deprecated-entry"><a href="a.html"><span class="w">Alpha</span><wbr></a> <span class="badge">deprecated</span>)"));
}

TEST_F(SiteBuild, SearchAndInventoryListWhatTheLookupIndexListsAtTheSitesPaths) {
    add(R"j({"Href": "ref/k.html#top", "RefEntities": [{"Name": "p.K", "RefEntityType": "class"},
             {"Name": "p.K", "RefEntityType": "constructor"}, {"Name": "p.K.go", "RefEntityType": "method"}],
             "Purpose": "A é thing", "DeprecationStatus": "warn",
             "ClassPropertyGroups": [{"Properties": [{"Name": "T", "Purpose": "its own"}, {"Name": "n"}]}]})j");
    add(pageAt("p.f", "ref/f.html"));
    std::vector<std::string> const paths{"ref/gen k.html", "ref/f.html"};
    LoadedSet const set = loaded();
    std::vector<SearchEntry> const search = siteSearchEntries(set.set, paths);
    std::vector<LookupEntry> const lookup = siteLookupEntries(set.set, paths);
    ASSERT_EQ(search.size(), lookup.size());
    ASSERT_EQ(search.size(), 5u);
    for (std::size_t i = 0; i < search.size(); ++i) {
        auto const& record = lookup[i].lookup;
        EXPECT_EQ(search[i].name, utf8(record.getName())) << i;
        EXPECT_EQ(search[i].entityType, record.getType()) << i;
        EXPECT_EQ(search[i].functionType, record.getFunctionType()) << i;
        EXPECT_EQ(search[i].purpose, utf8(record.getPurpose())) << i;
        EXPECT_EQ(search[i].deprecated, record.isDeprecated()) << i;
        EXPECT_EQ(search[i].path, utf8(record.getHref())) << i;
    }
    EXPECT_EQ(search[1].path, "ref/gen%20k.html#p.K.go") << "a member at its anchor, the page's path encoded";
    EXPECT_EQ(search[2].purpose, "its own");
    EXPECT_EQ(search[3].purpose, "A \u00e9 thing") << "a property without its own purpose has the page's";
    std::vector<InventoryEntry> const inventory = siteInventoryEntries(search);
    ASSERT_EQ(inventory.size(), search.size());
    EXPECT_EQ(inventory[4].uri, "ref/f.html");
    EXPECT_EQ(inventory[2].name, "p.K.T");
    EXPECT_EQ(inventory[2].uri, "ref/gen%20k.html#property-T");
}

}  // namespace
