// Output folders built whole or not at all, never written through a symlink; temporary
// paths removed by an interrupt; an output refused where it would touch an input.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <refpage/support/AtomicFile.hpp>
#include <refpage/support/InterruptCleanup.hpp>
#include <refpage/support/OutputFolder.hpp>
#include <refpage/support/OutputOverlap.hpp>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include <refpage/support/Beneath.hpp>

#include "support/Files.hpp"

namespace {

namespace fs = std::filesystem;
using refpage::FileError;
using refpage::OutputFolder;
using testvalues::contains;
using testvalues::modeOf;
using testvalues::namesIn;
using Scratch = testvalues::ScratchFolder;

/// Sets the umask for one scope.
class Umask {
public:
    explicit Umask(mode_t mask) : previous_(::umask(mask)) {}
    ~Umask() { ::umask(previous_); }

private:
    mode_t previous_;
};

TEST(OutputFolder, CommitPutsEveryFileInPlaceWithTheMarkerAndTheModeTheUmaskGives) {
    Scratch scratch;
    Umask const mask(022);
    fs::path const target = scratch / "new/site";  // the folders above it are made
    {
        OutputFolder out(target);
        EXPECT_TRUE(out.writeFile("index.html", "home"));
        EXPECT_TRUE(out.writeFile("ref/deep/er/a.html", "a"));
        EXPECT_TRUE(out.makeFolder("_site"));
        EXPECT_TRUE(out.writeFile("_site/style.css", "css"));
        EXPECT_FALSE(fs::exists(target)) << "nothing at the target before commit";
        EXPECT_EQ(out.commit(), "");
    }
    EXPECT_EQ(testvalues::readFile(target / "index.html"), "home");
    EXPECT_EQ(testvalues::readFile(target / "ref/deep/er/a.html"), "a");
    EXPECT_TRUE(fs::is_regular_file(target / refpage::outputMarkerName));
    EXPECT_TRUE(refpage::holdsOutputMarker(target));
    EXPECT_EQ(modeOf(target), 0755u);
    EXPECT_EQ(modeOf(target / "ref"), 0755u);
    EXPECT_EQ(modeOf(target / "index.html"), 0644u);
    EXPECT_EQ(namesIn(scratch.path()), std::vector<std::string>{"new"});
    EXPECT_EQ(fs::directory_iterator(scratch / "new")->path().filename(), "site") << "no staging folder beside it";
}

TEST(OutputFolder, ReplacesAFolderItWroteWholeKeepingItsModeAndNeverFollowingTheOldTreesSymlinks) {
    Scratch scratch;
    fs::path const target = scratch / "site";
    {
        OutputFolder first(target);
        first.writeFile("old.html", "old");
        EXPECT_EQ(first.commit(), "");
    }
    ::chmod(target.c_str(), 0750);
    scratch.write("elsewhere/keep.txt", "keep");
    fs::create_directory_symlink(scratch / "elsewhere", target / "link");  // planted in the old output
    {
        OutputFolder second(target);
        second.writeFile("new.html", "new");
        EXPECT_TRUE(fs::exists(target / "old.html")) << "the old output stays whole until commit";
        EXPECT_EQ(second.commit(), "");
    }
    EXPECT_FALSE(fs::exists(target / "old.html"));
    EXPECT_EQ(testvalues::readFile(target / "new.html"), "new");
    EXPECT_EQ(modeOf(target), 0750u);
    EXPECT_EQ(testvalues::readFile(scratch / "elsewhere/keep.txt"), "keep") << "removing the old tree followed its symlink";
    EXPECT_EQ(namesIn(scratch.path()), (std::vector<std::string>{"elsewhere", "site"}));
}

TEST(OutputFolder, RefusesToReplaceAnythingButAnEmptyFolderOrOneItWrote) {
    Scratch scratch;
    scratch.write("home/.profile", "mine");
    scratch.write("file", "text");
    fs::create_directory(scratch / "marked");
    scratch.write("marked/" + std::string(refpage::outputMarkerName), "x");
    fs::create_directory_symlink(scratch / "marked", scratch / "link");
    auto refusal = [](fs::path const& target) {
        try {
            OutputFolder out(target);
        } catch (FileError const& e) {
            return std::string(e.what());
        }
        return std::string("accepted");
    };
    std::string const home = refusal(scratch / "home");
    EXPECT_TRUE(contains(home, "home\": is a folder that refpage did not write (it holds no .refpage-output)")) << home;
    EXPECT_TRUE(contains(refusal(scratch / "link"), "is a symbolic link, not a folder that may be replaced"));
    EXPECT_TRUE(contains(refusal(scratch / "file"), "is a regular file, not a folder that may be replaced"));
    EXPECT_TRUE(contains(refusal(scratch.path() / "."), "name the output folder itself"));
    EXPECT_EQ(testvalues::readFile(scratch / "home/.profile"), "mine");
    fs::create_directory(scratch / "empty");
    for (char const* accepted : {"empty", "marked", "marked/", "new"})
        EXPECT_EQ(refusal(scratch / accepted), "accepted");
    EXPECT_EQ(namesIn(scratch.path()), (std::vector<std::string>{"empty", "file", "home", "link", "marked"}))
        << "a refused or abandoned output leaves no staging folder";
}

TEST(OutputFolder, AnUnsafePathIsAFailureNeverAWrite) {
    Scratch scratch;
    for (std::string const& path :
         std::vector<std::string>{"../escape.html", "/abs.html", "a//b.html", "", ".", "a/./b.html", "a/..",
                                  std::string("a\0b", 3), std::string(256, 'x'), std::string(4096, 'y')}) {
        OutputFolder out(scratch / "site");
        EXPECT_FALSE(out.writeFile(path, "x")) << path;
        EXPECT_TRUE(out.failed());
        EXPECT_TRUE(contains(out.failure(), "not a safe relative path inside the folder")) << out.failure();
        EXPECT_THROW((void)out.commit(), FileError);
    }
    EXPECT_TRUE(namesIn(scratch.path()).empty()) << "nothing written, nothing left";
}

class SymlinkInside : public ::testing::TestWithParam<bool> {
protected:
    void SetUp() override { refpage::beneath::forceSegmentWalk(GetParam()); }
    void TearDown() override { refpage::beneath::forceSegmentWalk(false); }
};

TEST_P(SymlinkInside, IsNeverWrittenThroughNorFollowedAsAFolder) {
    Scratch scratch;
    scratch.write("outside/victim.html", "victim");
    OutputFolder out(scratch / "site");
    fs::create_directory_symlink(scratch / "outside", out.staging() / "ref");
    fs::create_symlink(scratch / "outside/victim.html", out.staging() / "page.html");
    EXPECT_FALSE(out.writeFile("ref/new.html", "x"));
    EXPECT_FALSE(out.writeFile("page.html", "x"));
    EXPECT_EQ(testvalues::readFile(scratch / "outside/victim.html"), "victim");
    EXPECT_FALSE(fs::exists(scratch / "outside/new.html"));
    EXPECT_TRUE(contains(out.failure(), "site/ref/new.html\": cannot write: ")) << out.failure();
}

INSTANTIATE_TEST_SUITE_P(KernelOrSegmentWalk, SymlinkInside, ::testing::Bool());

TEST(OutputFolder, AFailedWriteNamesThePathAndReasonOnceStopsTheRestAndLeavesTheOldOutput) {
    Scratch scratch;
    fs::path const target = scratch / "site";
    {
        OutputFolder first(target);
        first.writeFile("a.html", "old");
        (void)first.commit();
    }
    // A file size limit stands in for a full disk: the write fails with the system's reason.
    struct sigaction ignore {};
    ignore.sa_handler = SIG_IGN;
    struct sigaction previousAction {};
    ::sigaction(SIGXFSZ, &ignore, &previousAction);
    rlimit previousLimit{};
    ::getrlimit(RLIMIT_FSIZE, &previousLimit);
    rlimit small = previousLimit;
    small.rlim_cur = 4096;
    ::setrlimit(RLIMIT_FSIZE, &small);
    std::string message;
    {
        OutputFolder second(target);
        EXPECT_TRUE(second.writeFile("small.html", "fits"));
        EXPECT_FALSE(second.writeFile("big/page.html", std::string(8192, 'x')));
        EXPECT_FALSE(second.writeFile("after.html", "x")) << "writes stop after the first failure";
        message = second.failure();
        try {
            (void)second.commit();
            ADD_FAILURE() << "a failed output was committed";
        } catch (FileError const& e) {
            EXPECT_EQ(e.what(), message);
        }
    }
    ::setrlimit(RLIMIT_FSIZE, &previousLimit);
    ::sigaction(SIGXFSZ, &previousAction, nullptr);
    EXPECT_EQ(message, "\"" + (target / "big/page.html").string() + "\": cannot write: File too large");
    EXPECT_EQ(testvalues::readFile(target / "a.html"), "old");
    EXPECT_FALSE(fs::exists(target / "small.html"));
    EXPECT_EQ(namesIn(scratch.path()), std::vector<std::string>{"site"});
}

TEST(OutputFolder, ThreadsWriteDistinctFilesIntoSharedFoldersAtOnce) {
    Scratch scratch;
    constexpr int threads = 4;
    constexpr int perThread = 250;
    OutputFolder out(scratch / "site");
    {
        std::vector<std::jthread> workers;
        for (int t = 0; t < threads; ++t)
            workers.emplace_back([&out, t] {
                for (int i = 0; i < perThread; ++i)
                    EXPECT_TRUE(out.writeFile("f" + std::to_string(i % 10) + "/g" + std::to_string(i % 3) + "/p" +
                                                  std::to_string(t) + "-" + std::to_string(i) + ".html",
                                              std::to_string(i)));
            });
    }
    EXPECT_EQ(out.commit(), "");
    std::size_t files = 0;
    for (auto const& entry : fs::recursive_directory_iterator(scratch / "site")) files += entry.is_regular_file();
    EXPECT_EQ(files, threads * perThread + 1u) << "every page and the marker";
}

TEST(InterruptCleanup, ATerminatedProcessRemovesItsStagingFolderAndTemporaryFileThenDiesByTheSignal) {
    Scratch scratch;
    scratch.write("index.sqlite", "old index");
    int ready[2];
    ASSERT_EQ(::pipe(ready), 0);
    pid_t const child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        refpage::installInterruptCleanup();
        OutputFolder out(scratch / "site");
        out.writeFile("ref/a.html", "a");
        refpage::AtomicFile file(scratch / "index.sqlite");
        file.write("new index, half written");
        (void)!::write(ready[1], "r", 1);
        for (;;) ::pause();
    }
    ::close(ready[1]);
    char byte = 0;
    ASSERT_EQ(::read(ready[0], &byte, 1), 1);
    ::close(ready[0]);
    ::kill(child, SIGTERM);
    int status = 0;
    ::waitpid(child, &status, 0);
    EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGTERM) << "status " << status;
    EXPECT_EQ(namesIn(scratch.path()), std::vector<std::string>{"index.sqlite"});
    EXPECT_EQ(testvalues::readFile(scratch / "index.sqlite"), "old index");
}

TEST(OutputOverlap, AnOutputThatIsInsideOrHoldsAnInputIsRefusedHoweverItIsSpelled) {
    Scratch scratch;
    scratch.write("pages/a.json", "{}");
    scratch.write("pages/sub/b.json", "{}");
    fs::create_directory_symlink(scratch / "pages", scratch / "link");
    fs::create_directory(scratch / "other");
    std::vector<std::string> const inputs{"-", (scratch / "missing").string(), (scratch / "pages").string()};
    auto refused = [&](fs::path const& output) { return refpage::outputOverlapsInput(output, inputs).value_or(""); };
    EXPECT_TRUE(contains(refused(scratch / "pages/a.json"), "lies inside the input folder")) << "a page in it";
    EXPECT_TRUE(contains(refused(scratch / "pages/sub/new.sqlite"), "lies inside the input folder"));
    EXPECT_TRUE(contains(refused(scratch / "link/new/x.sqlite"), "lies inside the input folder")) << "through a link";
    EXPECT_TRUE(contains(refused(scratch / "other/../pages/x"), "lies inside the input folder")) << "through ..";
    EXPECT_TRUE(contains(refused(scratch / "pages"), "would replace the input")) << "the folder itself";
    std::vector<std::string> const file{(scratch / "pages/sub/b.json").string()};
    EXPECT_TRUE(contains(refpage::outputOverlapsInput(scratch / "pages", file).value_or(""), "holds the input"));
    EXPECT_EQ(refused(scratch / "site"), "");
    EXPECT_EQ(refpage::outputOverlapsInput(scratch / "pages/c.json", file), std::nullopt) << "a sibling file is fine";
}

}  // namespace
