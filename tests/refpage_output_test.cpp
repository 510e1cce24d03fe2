// The tool's file outputs as a user meets them: what -o refuses (devices, FIFOs, symlinks,
// folders, inputs), the modes it gives, what a failed or interrupted run leaves; the
// walk passing by folders the tool wrote; and find --index against crafted databases.
#include <fcntl.h>
#include <fmt/format.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <pagegen/PageGen.hpp>
#include <refpage/docset/LookupIndex.hpp>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "support/ToolRun.hpp"

namespace {

namespace fs = std::filesystem;
using testvalues::contains;
using testvalues::data;
using testvalues::expectRun;
using testvalues::modeOf;
using testvalues::ScratchFolder;


/// The names in `folder` that a replacement leaves while at work.
std::vector<std::string> temporaryNames(fs::path const& folder) {
    std::vector<std::string> found;
    for (auto const& entry : fs::directory_iterator(folder))
        if (contains(entry.path().filename().string(), ".tmp-")) found.push_back(entry.path().filename().string());
    return found;
}

/// Runs SQL on a database file; false with the message when SQLite refuses it.
bool runSql(fs::path const& file, char const* sql, std::string* message = nullptr) {
    sqlite3* db = nullptr;
    sqlite3_open_v2(file.c_str(), &db, SQLITE_OPEN_READWRITE, nullptr);
    char* error = nullptr;
    bool const ok = sqlite3_exec(db, sql, nullptr, nullptr, &error) == SQLITE_OK;
    if (message != nullptr && error != nullptr) *message = error;
    sqlite3_free(error);
    sqlite3_close(db);
    return ok;
}

std::string const goodPages = data("good");

TEST(FileOutput, ADeviceFifoSymlinkOrFolderAtTheOutputIsRefusedAndLeftAsItWas) {
    ScratchFolder scratch;
    fs::path const fifo = scratch / "fifo";
    ASSERT_EQ(::mkfifo(fifo.c_str(), 0644), 0);
    fs::path const victim = scratch.write("victim.txt", "victim");
    fs::create_symlink(victim, scratch / "link.sqlite");
    fs::create_directory(scratch / "folder");
    for (auto const& [output, kind] : std::vector<std::pair<std::string, std::string>>{
             {"/dev/null", "a character device"}, {"/dev/full", "a character device"}, {fifo.string(), "a FIFO"},
             {(scratch / "link.sqlite").string(), "a symbolic link"}, {(scratch / "folder").string(), "a folder"}}) {
        expectRun("index " + goodPages + " -o " + output, 1, {"is " + kind + ", not a file that may be replaced"});
        expectRun("json " + data("good/minimal.json") + " -o " + output, 1, {"is " + kind});
    }
    struct stat null {};
    ASSERT_EQ(::stat("/dev/null", &null), 0);
    EXPECT_TRUE(S_ISCHR(null.st_mode)) << "/dev/null was replaced";
    EXPECT_EQ(testvalues::readFile(victim), "victim");
    EXPECT_TRUE(fs::is_symlink(scratch / "link.sqlite"));
    EXPECT_TRUE(fs::is_empty(scratch / "folder"));
    EXPECT_TRUE(temporaryNames(scratch.path()).empty());
}

TEST(FileOutput, AnOutputThatIsAnInputOrLiesInAnInputFolderIsRefusedBeforeAnythingIsRead) {
    ScratchFolder scratch;
    fs::path const page = scratch.write("pages/a.json", std::string(testvalues::minimalPage));
    fs::create_directory_symlink(scratch / "pages", scratch / "link");
    std::string const pages = (scratch / "pages").string();
    expectRun("index " + pages + " -o " + page.string(), 1, {"lies inside the input folder"});
    expectRun("index " + pages + " -o " + (scratch / "link/sub/new.sqlite").string(), 1, {"lies inside the input"});
    expectRun("index " + page.string() + " -o " + page.string(), 1, {"would replace the input"});
    expectRun("json " + page.string() + " -o " + (scratch / "link/a.json").string(), 1, {"would replace the input"});
    EXPECT_EQ(testvalues::readFile(page), testvalues::minimalPage);
    EXPECT_FALSE(fs::exists(scratch / "pages/sub"));
    expectRun("json " + page.string() + " -o " + (scratch / "pages/b.json").string(), 0);  // beside a file input
}

TEST(FileOutput, ANewIndexGetsTheUmasksModeAndAReplacedOneKeepsItsOwn) {
    ScratchFolder scratch;
    auto indexUnder = [&](char const* umask, fs::path const& output) {
        return testvalues::runShell(fmt::format("umask {} && {} -q index {} -o {} 2>&1", umask, REFPAGE_BINARY,
                                                goodPages, output.string()));
    };
    EXPECT_EQ(indexUnder("022", scratch / "a.sqlite").status, 0);
    EXPECT_EQ(modeOf(scratch / "a.sqlite"), 0644u);
    EXPECT_EQ(indexUnder("077", scratch / "b.sqlite").status, 0);
    EXPECT_EQ(modeOf(scratch / "b.sqlite"), 0600u);
    EXPECT_EQ(indexUnder("077", scratch / "a.sqlite").status, 0);
    EXPECT_EQ(modeOf(scratch / "a.sqlite"), 0644u) << "a replaced index keeps its mode, so others can still read it";
}

TEST(FileOutput, AWriteThatFailsSaysWhyLeavesTheOldIndexAndNoTemporaryFile) {
    ScratchFolder scratch;
    fs::path const index = scratch.write("index.sqlite", "old index");
    // A file size limit stands in for a full disk; SIGXFSZ ignored, the write fails with EFBIG.
    auto const run = testvalues::runShell(fmt::format("trap '' XFSZ; ulimit -f 8; {} index {} -o {} 2>&1",
                                                      REFPAGE_BINARY, goodPages, index.string()));
    EXPECT_EQ(run.status, 1) << run.output;
    EXPECT_TRUE(contains(run.output, "\"" + index.string() + "\": cannot write: ")) << run.output;
    EXPECT_FALSE(contains(run.output, "CREATE")) << "no schema in a message: " << run.output;
    EXPECT_EQ(testvalues::readFile(index), "old index");
    EXPECT_TRUE(temporaryNames(scratch.path()).empty());
}

TEST(FileOutput, AnIndexTerminatedWhileItWritesLeavesNoTemporaryFileAndDiesByTheSignal) {
    ScratchFolder scratch;
    pagegen::writeDocSet(scratch / "pages", pagegen::generateDocSet({.seed = 3, .pages = 1500}));
    fs::path const index = scratch.write("out/index.sqlite", "old index");
    for (int signal : {SIGTERM, SIGINT}) {
        bool caught = false;
        for (int attempt = 0; attempt < 5 && !caught; ++attempt) {
            // Interrupt once the new file appears beside the old one.
            std::optional<int> const status =
                testvalues::interruptTool({"index", (scratch / "pages").string(), "-o", index.string()}, signal,
                                          [&] { return !temporaryNames(scratch / "out").empty(); });
            caught = status && WIFSIGNALED(*status);
            if (caught) {
                EXPECT_EQ(WTERMSIG(*status), signal);
            }
            EXPECT_TRUE(temporaryNames(scratch / "out").empty()) << "signal " << signal;
        }
        EXPECT_TRUE(caught) << "the index was always written before signal " << signal << " arrived";
    }
}

TEST(PageWalk, AFolderTheToolWroteInsideTheInputIsNotReadAsPages) {
    ScratchFolder scratch;
    scratch.write("pages/a.json", std::string(testvalues::minimalPage));
    scratch.write("pages/old.docset/meta.json", "{\"name\": \"not a page\"");
    std::string const pages = (scratch / "pages").string();
    expectRun("check " + pages, 1, {"meta.json"});
    scratch.write("pages/old.docset/.refpage-output", "written by refpage");
    expectRun("check " + pages, 0, {"1 pages, 0 failed"});
}

class CraftedIndex : public ::testing::Test {
protected:
    void SetUp() override {
        file_ = scratch_ / "index.sqlite";
        ASSERT_EQ(testvalues::refpage("-q index " + goodPages + " -o " + file_.string()).status, 0);
    }
    /// find over the index after `sql` changed it: exits 1 with a refusal that quotes nothing of the file.
    void expectRefused(char const* sql, std::string const& reason) {
        std::string message;
        ASSERT_TRUE(runSql(file_, sql, &message)) << message;
        auto const run = testvalues::runShell(
            fmt::format("timeout 60 {} find full --index {} 2>&1", REFPAGE_BINARY, file_.string()));
        EXPECT_EQ(run.status, 1) << run.output;
        EXPECT_TRUE(contains(run.output, "not a lookup index written by this tool: " + reason)) << run.output;
        for (char const* schemaText : {"CREATE", "RECURSIVE", "SELECT"}) EXPECT_FALSE(contains(run.output, schemaText));
    }

    ScratchFolder scratch_;
    fs::path file_;
};

TEST_F(CraftedIndex, ARecursiveViewNamedLookupIsAnErrorAtOnce) {
    expectRefused("ALTER TABLE lookup RENAME TO original; CREATE VIEW lookup AS WITH RECURSIVE r(x) AS "
                  "(SELECT 1 UNION ALL SELECT x + 1 FROM r) SELECT x AS id, 'full' AS name, 'full' AS last, 0 AS "
                  "entity_type, 0 AS function_type, '' AS purpose, 0 AS deprecated, '' AS href, '' AS page_file FROM r",
                  "it holds views or triggers");
}

TEST_F(CraftedIndex, AViewInPlaceOfTheFullTextTablesOwnDataIsAnError) {
    expectRefused("ALTER TABLE lookup_text_data RENAME TO original; CREATE VIEW lookup_text_data(id, block) AS "
                  "WITH RECURSIVE r(x) AS (SELECT 1 UNION ALL SELECT x + 1 FROM r) SELECT x, x'00' FROM r",
                  "it holds views or triggers");
}

TEST_F(CraftedIndex, ATableOfTheWrongShapeIsAnError) {
    expectRefused("ALTER TABLE lookup RENAME COLUMN href TO link",
                  "its table lookup does not have the expected columns");
}

TEST_F(CraftedIndex, ALookupTableThatIsVirtualIsAnError) {
    expectRefused("DROP TABLE lookup; CREATE VIRTUAL TABLE lookup USING fts5(id, name, last, entity_type, "
                  "function_type, purpose, deprecated, href, page_file)",
                  "its table lookup is not of the expected kind");
}

TEST_F(CraftedIndex, AQueryPastTheTimeLimitIsGivenUpWithAnError) {
    std::string message;
    ASSERT_TRUE(runSql(file_,
                       "WITH RECURSIVE r(x) AS (SELECT 1 UNION ALL SELECT x + 1 FROM r LIMIT 300000) INSERT INTO "
                       "lookup(name, last, entity_type, function_type, purpose, deprecated, href, page_file) "
                       "SELECT 'n' || x, 'n' || x, 0, 0, '', 0, '', '' FROM r",
                       &message))
        << message;
    try {
        auto const index = refpage::LookupIndex::open(file_, std::chrono::milliseconds(1));
        (void)index.find("zzz");
        ADD_FAILURE() << "300,000 rows were scanned within 1 ms";
    } catch (refpage::LookupIndexError const& e) {
        EXPECT_TRUE(contains(e.what(), "longer than 1 ms")) << e.what();
    }
    EXPECT_EQ(refpage::LookupIndex::open(file_).find("n299999").size(), 1u) << "the default bound is ample";
}

}  // namespace
