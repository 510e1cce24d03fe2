// The site and the docset as outputs a user can trust: built whole or not at all, never
// written through a symlink or over the input or over a folder that is not the tool's,
// every page given a file, nothing of the building machine published, and no staging
// folder left behind by a failure or an interrupt.
#include <fmt/format.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <map>
#include <pagegen/PageGen.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "support/SetPages.hpp"
#include "support/ToolRun.hpp"

namespace {

namespace fs = std::filesystem;
using testvalues::contains;
using testvalues::expectRun;
using testvalues::fileTree;
using testvalues::pageAt;
using testvalues::ScratchFolder;


/// Names beside `output` that a build leaves while at work (".NAME.refpage-XXXXXX").
std::vector<std::string> stagingFolders(fs::path const& output) {
    std::vector<std::string> found;
    for (auto const& entry : fs::directory_iterator(output.parent_path()))
        if (contains(entry.path().filename().string(), ".refpage-")) found.push_back(entry.path().filename().string());
    return found;
}

class SiteOutput : public ::testing::Test {
protected:
    void SetUp() override {
        scratch_.write("pages/a.json", pageAt("p.a", "ref/a.html", R"(, "SeeAlso": [{"Url": "ref/b.html"}])"));
        scratch_.write("pages/b.json", pageAt("p.b", "ref/b.html"));
    }
    fs::path at(std::string const& name) const { return scratch_ / name; }
    std::string pages() const { return at("pages").string(); }
    ScratchFolder scratch_;
};

TEST_F(SiteOutput, SymlinksPlantedInAnOldSiteAreReplacedNeverFollowed) {
    expectRun("-q site " + pages() + " -o " + at("site").string(), 0);
    scratch_.write("victim.html", "victim");
    fs::create_directories(at("outside"));
    fs::remove(at("site/index.html"));
    fs::create_symlink(at("victim.html"), at("site/index.html"));
    fs::remove_all(at("site/_site"));
    fs::create_directory_symlink(at("outside"), at("site/_site"));
    expectRun("-q site " + pages() + " -o " + at("site").string(), 0);
    EXPECT_EQ(testvalues::readFile(at("victim.html")), "victim");
    EXPECT_TRUE(fs::is_empty(at("outside")));
    EXPECT_FALSE(fs::is_symlink(at("site/index.html")));
    EXPECT_TRUE(contains(testvalues::readFile(at("site/index.html")), "<!DOCTYPE html>"));
    EXPECT_TRUE(fs::is_regular_file(at("site/_site/style.css")) && !fs::is_symlink(at("site/_site")));
}

TEST_F(SiteOutput, AFailureOfAPageOrTheTemplatesLeavesTheOldOutputAsItWas) {
    expectRun("-q site " + pages() + " -o " + at("site").string(), 0);
    expectRun("-q docset " + pages() + " -o " + at("D.docset").string() + " --name D", 0);
    auto const siteBefore = fileTree(at("site"));
    auto const docsetBefore = fileTree(at("D.docset"));
    scratch_.write("pages/a.json", pageAt("p.a", "ref/a.html", R"(, "Purpose": "changed")"));
    expectRun("site " + pages() + " -o " + at("site").string() + " --templates " + at("none").string(), 1,
              {"no such templates folder", "nothing written"});
    scratch_.write("pages/c.json", "{");
    expectRun("site " + pages() + " -o " + at("site").string(), 1, {"c.json:1:2: error", "nothing written"});
    expectRun("docset " + pages() + " -o " + at("D.docset").string() + " --name D", 1, {"nothing written"});
    EXPECT_EQ(fileTree(at("site")), siteBefore);
    EXPECT_EQ(fileTree(at("D.docset")), docsetBefore);
    EXPECT_TRUE(stagingFolders(at("site")).empty());
}

TEST_F(SiteOutput, AFullDiskLeavesTheOldSiteAndSaysWhyOnce) {
    expectRun("-q site " + pages() + " -o " + at("site").string(), 0);
    auto const before = fileTree(at("site"));
    pagegen::writeDocSet(at("many"), pagegen::generateDocSet({.seed = 5, .pages = 200}));
    // A file size limit stands in for a full disk: every page after the first large one fails.
    auto const run = testvalues::runShell(fmt::format("trap '' XFSZ; ulimit -f 16; {} site {} -o {} 2>&1",
                                                      REFPAGE_BINARY, at("many").string(), at("site").string()));
    EXPECT_EQ(run.status, 1) << run.output;
    std::size_t reasons = 0;
    for (std::size_t at = run.output.find("cannot write"); at != std::string::npos;
         at = run.output.find("cannot write", at + 1))
        ++reasons;
    EXPECT_EQ(reasons, 1u) << "one cause, said once: " << run.output;
    EXPECT_TRUE(contains(run.output, "File too large")) << run.output;
    EXPECT_EQ(fileTree(at("site")), before);
    EXPECT_TRUE(stagingFolders(at("site")).empty());
}

TEST_F(SiteOutput, AFolderTheToolDidNotWriteAndTheInputAreNeverTheOutput) {
    scratch_.write("mine/notes.txt", "my notes");
    expectRun("site " + pages() + " -o " + at("mine").string(), 1, {"mine"});
    EXPECT_EQ(fileTree(at("mine")), (std::map<std::string, std::string>{{"notes.txt", "my notes"}}));
    expectRun("docset " + pages() + " -o " + at("pages/D.docset").string() + " --name D", 1, {"lies inside the input"});
    expectRun("site " + pages() + " -o " + pages(), 1);
    EXPECT_EQ(fileTree(at("pages")).size(), 2u);
    expectRun("-q check " + pages(), 0);
}

TEST_F(SiteOutput, EveryPageGetsAFileWhateverItsHrefAndTheHomePageStaysAFile) {
    scratch_.write("pages/c.json", pageAt("p.c", "index.html/x.html"));
    scratch_.write("pages/d.json", pageAt("p.d", "ref/a.html/c.html"));
    scratch_.write("pages/e.json", pageAt("p.e", "ref/" + std::string(300, 'e') + ".html"));
    scratch_.write("pages/f.json", pageAt("p.f", "_site/style.css.html"));
    auto const run = expectRun("site " + pages() + " -o " + at("site").string(), 0,
                               {"6 pages written", "4 pages moved"});
    EXPECT_TRUE(fs::is_regular_file(at("site/index.html")));
    EXPECT_TRUE(fs::is_regular_file(at("site/ref/a.html")));
    for (char const* name : {"p.c", "p.d", "p.e", "p.f"})
        EXPECT_TRUE(fs::is_regular_file(at("site/pages") / (std::string(name) + ".html"))) << name << run.output;
}

TEST_F(SiteOutput, ReferencedFilesAreCopiedFromTheAssetsFolderNeverThroughASymlinkOrOverAPage) {
    scratch_.write("pages/a.json", pageAt("p.a", "ref/a.html", R"j(, "AppThumbnail": {"FileRef": "img/a.png", "Alt": "A"},
        "Description": "![plot](img/b.png) ![gone](img/none.png) ![over a page](ref/b.html) ![out](img/out.png)")j"));
    scratch_.write("pages/img/a.png", "png a");
    scratch_.write("pages/img/b.png", "png b");
    scratch_.write("secret.png", "secret");
    scratch_.write("pages/ref/b.html", "not a page");
    fs::create_symlink(at("secret.png"), at("pages/img/out.png"));
    auto const run = expectRun("site " + pages() + " -o " + at("site").string(), 0,
                               {"file \"img/none.png\" (line 1, column 20 of the description) cannot be published",
                                "file \"ref/b.html\" (line 1, column 42 of the description) would stand where a page",
                                "file \"img/out.png\""});
    EXPECT_EQ(testvalues::readFile(at("site/img/a.png")), "png a");
    EXPECT_EQ(testvalues::readFile(at("site/img/b.png")), "png b");
    EXPECT_FALSE(fs::exists(at("site/img/none.png")));
    EXPECT_FALSE(fs::exists(at("site/img/out.png"))) << "a symlink in the assets folder is never followed";
    EXPECT_TRUE(contains(testvalues::readFile(at("site/ref/b.html")), "p.b")) << "the page keeps its place";
    std::string const html = testvalues::readFile(at("site/ref/a.html"));
    EXPECT_TRUE(contains(html, "../img/b.png")) << html;
    EXPECT_FALSE(contains(html, "img/none.png\"")) << "a missing file shows its alt text";
    expectRun("check " + pages(), 0, {"2 missing files"});
    expectRun("--strict check " + pages(), 1);
}

TEST_F(SiteOutput, NothingOfTheBuildingMachinesFilesIsPublished) {
    expectRun("-q docset " + pages() + " -o " + at("D.docset").string() + " --name D", 0);
    expectRun("-q site " + pages() + " -o " + at("site").string(), 0);
    std::string const machine = scratch_.path().string();
    for (auto const& [name, bytes] : fileTree(at("site"))) EXPECT_FALSE(contains(bytes, machine)) << name;
    for (auto const& [name, bytes] : fileTree(at("D.docset"))) EXPECT_FALSE(contains(bytes, machine)) << name;
}

TEST_F(SiteOutput, ADocsetIndexIsReadableByOthersUnderTheUsualUmask) {
    auto const run = testvalues::runShell(fmt::format("umask 022 && {} -q docset {} -o {} --name D 2>&1", REFPAGE_BINARY,
                                                      pages(), at("D.docset").string()));
    ASSERT_EQ(run.status, 0) << run.output;
    struct stat status {};
    ASSERT_EQ(::stat(at("D.docset/Contents/Resources/docSet.dsidx").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0644u);
    ASSERT_EQ(::stat(at("D.docset").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0755u);
}

TEST_F(SiteOutput, AnInterruptedSiteLeavesTheOldOneAndNoStagingFolder) {
    expectRun("-q site " + pages() + " -o " + at("site").string(), 0);
    auto const before = fileTree(at("site"));
    pagegen::writeDocSet(at("many"), pagegen::generateDocSet({.seed = 4, .pages = 3000}));
    int interrupted = 0;
    for (int signal : {SIGTERM, SIGINT}) {
        // Interrupt once the staging folder exists, or give up when the build ends first.
        std::optional<int> const status =
            testvalues::interruptTool({"-q", "site", at("many").string(), "-o", at("site").string()}, signal,
                                      [&] { return !stagingFolders(at("site")).empty(); });
        if (status) {
            ++interrupted;
            EXPECT_TRUE(WIFSIGNALED(*status) && WTERMSIG(*status) == signal) << "signal " << signal;
            EXPECT_EQ(fileTree(at("site")), before);
        }
        EXPECT_TRUE(stagingFolders(at("site")).empty()) << "signal " << signal;
    }
    EXPECT_GT(interrupted, 0) << "every build ended before it could be interrupted";
}

TEST(SiteTool, ExitStatusFollowsPagesLinksTemplatesAndStrict) {
    using testvalues::expectRun;
using testvalues::fileTree;
using testvalues::pageAt;
    testvalues::ScratchFolder const folder;
    folder.write("pages/a.json", pageAt("p.a", "ref/a.html", R"(, "SeeAlso": [{"Name": "x", "Url": "ref/none.html"}])"));
    folder.write("pages/b.json", pageAt("p.b", "ref/a.html"));
    std::string const pages = (folder / "pages").string();
    std::string const out = " -o " + (folder / "site").string();
    expectRun("site " + pages + out, 0, {"a.json: warning: link leads to no page of the set; shown as text [/SeeAlso/0/Url]",
                                         "2 pages written to", "1 unresolved links shown as text, 1 pages moved"});
    EXPECT_TRUE(std::filesystem::exists(folder / "site" / "pages" / "p.b.html"));
    expectRun("--strict site " + pages + out, 1);
    EXPECT_EQ(expectRun("-q site " + pages + out, 0).output, "");
    expectRun("docset " + pages + " -o " + (folder / "D.docset").string(), 2);
}

}  // namespace
