// Where pages come from, as the tool meets them: a FIFO, unreadable entries and folders,
// forged file names and a page too large for memory each fail alone, with the reason.
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstring>
#include <filesystem>
#include <refpage/format/Inputs.hpp>
#include <string>
#include <vector>

#include "support/ToolRun.hpp"

namespace {

namespace fs = std::filesystem;
using testvalues::contains;
using testvalues::ScratchFolder;
using testvalues::ToolRun;
using namespace std::string_literals;

/// Runs the tool with `arguments` under a time limit, so that a hang fails instead of blocking the suite.
ToolRun timed(std::string const& arguments) {
    return testvalues::runShell("timeout 20 " + std::string(REFPAGE_BINARY) + " " + arguments + " 2>&1");
}

TEST(RefpageInputs, AFifoGivenByNameIsRefusedAtOnceAndUnreadableEntriesOfAFolderAreReported) {
    ScratchFolder const folder;
    ASSERT_EQ(mkfifo((folder / "pipe.json").c_str(), 0600), 0);
    ToolRun const show = timed("show " + (folder / "pipe.json").string());
    EXPECT_EQ(show.status, 1);
    EXPECT_EQ(show.output, (folder / "pipe.json").string() + ": error: not a regular file (FIFO)\n");

    folder.write("good.json", testvalues::minimalPage);
    folder.write("notes.txt", "not a page");
    fs::create_symlink("loop.json", folder / "loop.json");
    fs::create_symlink("nowhere", folder / "dangling.json");
    ToolRun const run = timed("check " + folder.path().string());
    EXPECT_EQ(run.status, 1) << run.output;
    std::string const root = folder.path().string();
    for (std::string const& line : {root + "/loop.json: error: Too many levels of symbolic links",
                                    root + "/dangling.json: error: No such file or directory",
                                    root + "/pipe.json: error: not a regular file (FIFO)", "4 pages, 3 failed, "s})
        EXPECT_TRUE(contains(run.output, line)) << line << "\n" << run.output;
}

TEST(RefpageInputs, AnUnreadableSubfolderIsReportedWithTheSystemsReason) {
    ScratchFolder const folder;
    folder.write("a.json", testvalues::minimalPage);
    folder.write("locked/b.json", testvalues::minimalPage);
    folder.write("z.json", testvalues::minimalPage);
    fs::permissions(folder / "locked", fs::perms::none);
    std::string command = std::string(REFPAGE_BINARY) + " check " + folder.path().string() + " 2>&1";
    if (geteuid() == 0) {
        // Root reads every folder: run the tool as an unprivileged user.
        if (testvalues::runShell("command -v setpriv >/dev/null 2>&1 && id nobody >/dev/null 2>&1").status != 0)
            GTEST_SKIP() << "running as root without setpriv or a user 'nobody' to drop to";
        fs::permissions(folder.path(), fs::perms::owner_all | fs::perms::group_read | fs::perms::group_exec |
                                           fs::perms::others_read | fs::perms::others_exec);
        std::string const asNobody = "setpriv --reuid=nobody --regid=nogroup --clear-groups ";
        // The checkout or the scratch folder may lie where that user cannot go (a clone in a
        // folder only root can enter): then nothing here can be shown, and the test says why.
        ToolRun const probe = testvalues::runShell(asNobody + REFPAGE_BINARY + " check " +
                                                   (folder / "a.json").string() + " 2>&1");
        if (probe.status != 0) {
            fs::permissions(folder / "locked", fs::perms::owner_all);
            GTEST_SKIP() << "the unprivileged user cannot run the built tool on a readable page: " << probe.output;
        }
        command = asNobody + command;
    }
    ToolRun const run = testvalues::runShell(command);
    fs::permissions(folder / "locked", fs::perms::owner_all);
    EXPECT_EQ(run.status, 1) << run.output;
    EXPECT_TRUE(contains(run.output, (folder / "locked").string() + ": error: Permission denied")) << run.output;
    EXPECT_TRUE(contains(run.output, "3 pages, 1 failed")) << run.output;
}

TEST(RefpageInputs, AFileNameCannotForgeOrColourAReportLine) {
    ScratchFolder const folder;
    folder.write("evil\x1b[31m\nFAIL forged.json", "{");
    ToolRun const run = testvalues::expectRun("check " + folder.path().string(), 1,
                                              {"/evil\\x1b[31m\\nFAIL forged.json:1:2: error: malformed JSON",
                                               "1 pages, 1 failed"});
    EXPECT_FALSE(contains(run.output, "\x1b")) << run.output;
}

TEST(RefpageInputs, APageThatRunsOutOfMemoryFailsAloneAndTheRunGoesOn) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "a sanitizer's shadow memory does not fit under an address-space limit";
#endif
    ScratchFolder const folder;
    fs::path const big = folder / "a_big.json";
    folder.write("a_big.json", "");
    fs::resize_file(big, 200u << 20);  // sparse: 200 MiB that take no disk
    folder.write("b_small.json", testvalues::minimalPage);
    ToolRun const run = testvalues::runShell("ulimit -v 100000 && " + std::string(REFPAGE_BINARY) + " check " +
                                             folder.path().string() + " 2>&1");
    EXPECT_EQ(run.status, 1) << run.output;
    EXPECT_TRUE(contains(run.output, big.string() + ": error: out of memory\n")) << run.output;
    EXPECT_TRUE(contains(run.output, "2 pages, 1 failed")) << run.output;
}

}  // namespace
