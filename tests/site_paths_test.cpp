// Where a site puts each page: every page gets a distinct safe path, no page's path
// is a folder of another's, the site's own paths stay its own, whatever the Hrefs.
#include <gtest/gtest.h>

#include <pagegen/PageGen.hpp>
#include <random>
#include <refpage/site/Paths.hpp>
#include <refpage/support/Text.hpp>
#include <string>
#include <unordered_set>
#include <vector>

namespace {

using refpage::assignPagePaths;
using refpage::HrefRefusal;
using Strings = std::vector<std::string>;

/// Checks what holds for any assignment of `hrefs`: one distinct safe path per page, no path a
/// folder of another, none the site's own, a kept Href kept as it was, derived ones under pages/.
void expectSafeAssignment(Strings const& hrefs, refpage::PagePathAssignment const& assigned) {
    ASSERT_EQ(assigned.paths.size(), hrefs.size());
    ASSERT_EQ(assigned.derived.size(), assigned.refusals.size());
    std::unordered_set<std::string> files;
    for (auto const& path : assigned.paths) {
        EXPECT_TRUE(refpage::safeRelativePath(path)) << path;
        EXPECT_TRUE(files.insert(refpage::asciiLowered(path)).second) << "two pages at " << path;
    }
    for (auto const& file : files) {
        EXPECT_NE(file, "index.html");
        EXPECT_NE(file, "404.html");
        EXPECT_FALSE(file.starts_with("_site/")) << file;
        for (auto slash = file.find('/'); slash != std::string::npos; slash = file.find('/', slash + 1))
            EXPECT_FALSE(files.contains(file.substr(0, slash))) << file << " makes a folder of a page's file";
    }
    std::unordered_set<std::size_t> const derived(assigned.derived.begin(), assigned.derived.end());
    for (std::size_t i = 0; i < hrefs.size(); ++i) {
        if (derived.contains(i)) {
            EXPECT_TRUE(assigned.paths[i].starts_with("pages/")) << assigned.paths[i];
        } else {
            EXPECT_EQ(assigned.paths[i], refpage::safePagePath(hrefs[i]).value_or("?")) << hrefs[i];
        }
    }
}

/// A generated doc set's Hrefs, each rewritten by chance into one of the ways an Href can
/// collide with another page, with the site's own files, or with the file system's limits.
Strings hostileHrefs(std::uint64_t seed, std::size_t pages, Strings& names) {
    auto const set = pagegen::generateDocSet({.seed = seed, .pages = pages, .duplicateHrefs = 0.05});
    std::mt19937_64 random(seed);
    Strings hrefs;
    auto earlier = [&]() -> std::string { return hrefs.empty() ? "a.html" : hrefs[random() % hrefs.size()]; };
    for (auto const& page : set) {
        names.push_back(page.name);
        std::string href = page.href;
        switch (random() % 14) {
            case 0: href = earlier() + "/c.html"; break;                           // under another page's file
            case 1: href = refpage::asciiLowered(earlier()); break;                // another's, in other case
            case 2: href = "index.html/" + page.name + ".html"; break;
            case 3: href = (random() % 2 ? "404.HTML" : "_site/x.html"); break;
            case 4: href = std::string(300, 'l') + ".html"; break;                 // a segment past NAME_MAX
            case 5:  // many segments, each short enough, past the whole path's limit
                href = "d";
                for (int s = 0; s < 40; ++s) href += "/" + std::string(99, 's');
                href += ".html";
                break;
            case 6: href = "pages/" + page.name + ".html"; break;                  // where a derived path goes
            case 7: href = "pages/" + page.name + ".html/x.html"; break;           // a folder there
            case 8: href = random() % 2 ? "" : "../" + page.href; break;
            case 9: href = earlier() + "#frag"; break;
            default: break;
        }
        hrefs.push_back(std::move(href));
    }
    return hrefs;
}

TEST(SitePaths, GeneratedSetsWithHostileHrefsGiveEveryPageADistinctSafePath) {
    for (std::uint64_t seed = 1; seed <= 20; ++seed) {
        Strings names;
        Strings const hrefs = hostileHrefs(seed, 150, names);
        expectSafeAssignment(hrefs, assignPagePaths(hrefs, names));
        // The same Hrefs in reverse order: the rules do not depend on which page comes first.
        Strings const reversedHrefs(hrefs.rbegin(), hrefs.rend());
        Strings const reversedNames(names.rbegin(), names.rend());
        expectSafeAssignment(reversedHrefs, assignPagePaths(reversedHrefs, reversedNames));
    }
}

TEST(SitePaths, APagesFileWinsOverAnotherPagesFolderInEitherOrder) {
    for (Strings const& hrefs :
         {Strings{"ref/a.html/c.html", "ref/a.html"}, Strings{"ref/a.html", "REF/A.HTML/c.html"}}) {
        auto const assigned = assignPagePaths(hrefs, {"c", "a"});
        std::size_t const folderPage = hrefs[0].size() > hrefs[1].size() ? 0 : 1;
        EXPECT_EQ(assigned.paths[1 - folderPage], hrefs[1 - folderPage]);
        EXPECT_EQ(assigned.derived, std::vector<std::size_t>{folderPage});
        EXPECT_EQ(assigned.refusals, std::vector<HrefRefusal>{HrefRefusal::blocked});
    }
    auto const home = assignPagePaths({"index.html/x.html", "404.html"}, {"x", "missing"});
    EXPECT_EQ(home.paths, (Strings{"pages/x.html", "pages/missing.html"}));
    EXPECT_EQ(home.refusals, (std::vector<HrefRefusal>{HrefRefusal::blocked, HrefRefusal::reserved}));
}

TEST(SitePaths, ADerivedPathAvoidsFoldersOfKeptPathsAndEarlierDerivedPaths) {
    auto const assigned = assignPagePaths({"pages/x.html/y.html", "", "", "pages/x-3.html"}, {"y", "x", "X", "z"});
    EXPECT_EQ(assigned.paths, (Strings{"pages/x.html/y.html", "pages/x-2.html", "pages/X-4.html", "pages/x-3.html"}));
}

TEST(SitePaths, AnHrefTooLongForTheFileSystemIsMovedWithItsReason) {
    std::string deep;
    for (int s = 0; s < 40; ++s) deep += std::string(99, 's') + "/";
    Strings const hrefs{std::string(201, 'l') + ".html", deep + "a.html", std::string(195, 'o') + ".html"};
    auto const assigned = assignPagePaths(hrefs, {"l", "deep", "ok"});
    EXPECT_EQ(assigned.paths, (Strings{"pages/l.html", "pages/deep.html", hrefs[2]}));
    EXPECT_EQ(assigned.refusals, (std::vector<HrefRefusal>{HrefRefusal::tooLong, HrefRefusal::tooLong}));
    std::string const reason = refpage::refusalReason(hrefs[1], HrefRefusal::tooLong);
    EXPECT_LT(reason.size(), 130u) << "the Href is cut in the message";
    EXPECT_TRUE(reason.ends_with("...\" is too long for a file path")) << reason;
}

TEST(SitePaths, ManyPagesOfOneNameGetNumberedPathsInOrder) {
    Strings const hrefs(3000, "");
    auto const assigned = assignPagePaths(hrefs, Strings(3000, "same"));
    EXPECT_EQ(assigned.paths[0], "pages/same.html");
    EXPECT_EQ(assigned.paths[1], "pages/same-2.html");
    EXPECT_EQ(assigned.paths[2999], "pages/same-3000.html");
    expectSafeAssignment(hrefs, assigned);
}

}  // namespace
