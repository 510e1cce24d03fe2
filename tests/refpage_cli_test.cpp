// The refpage tool as a user runs it: commands, command-line conventions, exit
// status, and output that fails loudly.
#include <fmt/format.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <regex>
#include <reference/glue/Enumerations.hpp>
#include <refpage/Json.hpp>
#include <sstream>
#include <string>

#include "support/ToolRun.hpp"

namespace {

using testvalues::contains;
using testvalues::data;
using testvalues::refpage;
using testvalues::ToolRun;

std::string readFile(std::filesystem::path const& file) {
    std::ifstream stream(file, std::ios::binary);
    std::ostringstream text;
    text << stream.rdbuf();
    return text.str();
}

TEST(RefpageTool, ShowWithoutAFilePrintsTheBundledSamplePage) {
    ToolRun const run = refpage("show");
    EXPECT_EQ(run.status, 0) << run.output;
    EXPECT_EQ(run.output.rfind("refpage.check\n=============\nCheck that pages survive a round trip through the host.\n", 0),
              0u)
        << run.output;
    EXPECT_TRUE(contains(run.output, "refpage.check (Tool, Tool_Launcher)"));
    EXPECT_TRUE(contains(run.output, "--strict (name-value)"));
    EXPECT_TRUE(std::regex_search(run.output, std::regex("\n  Status +Current\n")));
}

TEST(RefpageTool, ShowNamesEnumerationValuesByTheirDisplayText) {
    ToolRun const run = refpage("show " + data("good/unicode.json"));
    EXPECT_EQ(run.status, 0) << run.output;
    EXPECT_TRUE(contains(run.output, "(Class, Constructor)")) << run.output;
    EXPECT_TRUE(std::regex_search(run.output, std::regex("\n  Status +Warn\n")));
    EXPECT_TRUE(contains(run.output, "[CreateObject]"));
}

TEST(RefpageTool, JsonWritesTheCanonicalPageWithEnumerationMembersAsKeys) {
    ToolRun const run = refpage("json " + data("good/minimal.json"));
    ASSERT_EQ(run.status, 0) << run.output;
    refpage::Json const page = refpage::Json::parse(run.output);
    EXPECT_EQ(page.size(), 15u);
    EXPECT_EQ(page["RefEntities"][0]["RefEntityType"], "function");
    EXPECT_EQ(page["DeprecationStatus"], "current");
    EXPECT_EQ(page.begin().key(), "Href");
}

TEST(RefpageTool, CheckPassesGoodPagesAndReportsEachBadPageAndFails) {
    ToolRun const good = refpage("check " + data("good"));
    EXPECT_EQ(good.status, 0) << good.output;
    EXPECT_TRUE(contains(good.output, "3 pages, 0 failed, 2 unresolved links, 0 shared Hrefs, 0 duplicate names ("))
        << good.output;
    ToolRun const run = refpage("check " + data("bad") + " " + data("good"));
    EXPECT_EQ(run.status, 1) << run.output;
    EXPECT_TRUE(contains(run.output, "malformed.json:3:26: error: malformed JSON: syntax error")) << run.output;
    EXPECT_TRUE(contains(run.output, "wrong_type.json:3:73: error: expected a string, found array"))
        << run.output;
    EXPECT_TRUE(contains(run.output,
                         R"(duplicate_key.json:3:99: error: duplicate key "Name" [/InputGroups/0/Inputs/1/Name])"))
        << run.output;
    EXPECT_TRUE(contains(run.output, "6 pages, 3 failed, 2 unresolved links, 0 shared Hrefs, 0 duplicate names ("));
}

TEST(RefpageTool, WarningsArePrintedAndFailOnlyWithStrict) {
    ToolRun const lenient = refpage("check " + data("warning"));
    EXPECT_EQ(lenient.status, 0) << lenient.output;
    EXPECT_TRUE(contains(lenient.output, "warning: ")) << lenient.output;
    EXPECT_TRUE(contains(lenient.output, "warning: \"widget\" names no member of RefEntityType"));
    ToolRun const strict = refpage("check --strict " + data("warning"));
    EXPECT_EQ(strict.status, 1) << strict.output;
    EXPECT_EQ(refpage("show --strict " + data("warning/unknown_member.json")).status, 1);
}

TEST(RefpageTool, ToolOptionsAreAcceptedBeforeAndAfterTheCommand) {
    for (std::string const& arguments : {"--strict check " + data("warning"), "check --strict " + data("warning"),
                                         "check " + data("warning") + " --strict"}) {
        ToolRun const run = refpage(arguments);
        EXPECT_EQ(run.status, 1) << arguments << "\n" << run.output;
        EXPECT_TRUE(contains(run.output, "(strict mode)")) << arguments << "\n" << run.output;
    }
    EXPECT_EQ(refpage("-j 3 check " + data("good")).status, 0);
    EXPECT_EQ(refpage("check --jobs 1 " + data("good")).status, 0);
    EXPECT_EQ(refpage("check -j 0 " + data("good")).status, 2) << "at least one job";
}

TEST(RefpageTool, QuietKeepsErrorsAndResultsOnly) {
    EXPECT_EQ(refpage("-q check " + data("good")).output, "");
    ToolRun const warned = refpage("check -q " + data("warning"));
    EXPECT_EQ(warned.status, 0);
    EXPECT_EQ(warned.output, "") << "no warnings";
    ToolRun const failed = refpage("-q check " + data("bad/wrong_type.json"));
    EXPECT_EQ(failed.status, 1);
    EXPECT_TRUE(contains(failed.output, "wrong_type.json:3:73: error: expected a string")) << failed.output;
    EXPECT_FALSE(contains(failed.output, "pages,")) << "no summary";
    ToolRun const found = refpage("find -q minimal " + data("good"));
    EXPECT_TRUE(contains(found.output, "demo.minimal")) << found.output;
    EXPECT_FALSE(contains(found.output, " pages\n")) << found.output;
}

TEST(RefpageTool, DashReadsThePageFromStandardInputOnce) {
    ToolRun const piped = refpage("json - < " + data("good/minimal.json"));
    EXPECT_EQ(piped.status, 0);
    EXPECT_EQ(piped.output, refpage("json " + data("good/minimal.json")).output);
    ToolRun const bad = refpage("check - " + data("good") + " < " + data("bad/wrong_type.json"));
    EXPECT_EQ(bad.status, 1);
    EXPECT_TRUE(contains(bad.output, "<stdin>:3:73: error: expected a string, found array [\"not\", \"a\", \"string\"] [/InputGroups/0/Inputs/1/Name]")) << bad.output;
    EXPECT_TRUE(contains(bad.output, "4 pages, 1 failed")) << bad.output;
    EXPECT_TRUE(contains(refpage("show - < " + data("good/minimal.json")).output, "demo.minimal\n====="));
    ToolRun const twice = refpage("check - - < " + data("good/minimal.json"));
    EXPECT_EQ(twice.status, 2);
    EXPECT_TRUE(contains(twice.output, "standard input (-) can be named only once")) << twice.output;
}

TEST(RefpageTool, JsonOutputFileIsReplacedOnlyByAPageThatLoaded) {
    testvalues::ScratchFolder const folder;
    std::filesystem::path const target = folder / "out.json";
    ASSERT_EQ(refpage("json -o " + target.string() + " " + data("good/minimal.json")).output, "");
    EXPECT_EQ(readFile(target), refpage("json " + data("good/minimal.json")).output);

    std::filesystem::permissions(target, std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
    ASSERT_EQ(refpage("json -o " + target.string() + " " + data("good/unicode.json")).status, 0);
    EXPECT_EQ(std::filesystem::status(target).permissions(),
              std::filesystem::perms::owner_read | std::filesystem::perms::owner_write)
        << "a file replaced keeps its permissions";
    ToolRun const failed = refpage("json " + data("bad/wrong_type.json") + " --output " + target.string());
    EXPECT_EQ(failed.status, 1);
    EXPECT_EQ(readFile(target), refpage("json " + data("good/unicode.json")).output) << "left untouched";
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path()), {}), 1) << "no temporary left";

    ToolRun const nowhere = refpage("json -o " + (folder / "no/such/folder.json").string() + " " +
                                    data("good/minimal.json"));
    EXPECT_EQ(nowhere.status, 1);
    EXPECT_TRUE(contains(nowhere.output, "No such file or directory")) << nowhere.output;
}

TEST(RefpageTool, ExitStatusSaysWhetherAPageFailedOrNothingWasFound) {
    ToolRun const show = refpage("show " + data("bad/wrong_type.json"));
    EXPECT_EQ(show.status, 1);
    EXPECT_FALSE(contains(show.output, "demo.wrong")) << "a page that failed is never printed";
    EXPECT_EQ(refpage("check " + data("no/such/folder")).status, 1);
    testvalues::ScratchFolder const empty;
    ToolRun const nothing = refpage("check " + empty.path().string());
    EXPECT_EQ(nothing.status, 1);
    EXPECT_TRUE(contains(nothing.output, "error: no page found")) << nothing.output;
    ToolRun const none = refpage("find no-such-name " + data("good"));
    EXPECT_EQ(none.status, 1);
    EXPECT_TRUE(contains(none.output, "nothing matches \"no-such-name\"")) << none.output;
}

TEST(RefpageTool, ShowAndJsonSayWhenTheirFileIsAFolderOrMissing) {
    for (char const* command : {"show ", "json "}) {
        ToolRun const folder = refpage(command + data("good"));
        EXPECT_EQ(folder.status, 1);
        EXPECT_EQ(folder.output, data("good") + ": error: is a folder, expected a page file\n");
        ToolRun const missing = refpage(command + data("no/such.json"));
        EXPECT_EQ(missing.status, 1);
        EXPECT_EQ(missing.output, data("no/such.json") + ": error: No such file or directory\n");
    }
}

TEST(RefpageTool, FindListsMatchingPagesAsATable) {
    ToolRun const run = refpage("find minimal " + data("good"));
    EXPECT_EQ(run.status, 0) << run.output;
    EXPECT_EQ(run.output,
              "Name          Type      Function  Deprecated  Link               Purpose\n"
              "demo.minimal  Function  Simple    no          demo/minimal.html  The smallest page worth showing.\n"
              "1 of 5 entries\n");
}

TEST(RefpageTool, VersionAndUsageErrors) {
    ToolRun const version = refpage("--version");
    EXPECT_EQ(version.status, 0);
    EXPECT_TRUE(std::regex_match(version.output, std::regex("refpage [0-9]+\\.[0-9]+\\.[0-9]+\n"))) << version.output;

    ToolRun const unknown = refpage("bogus");
    EXPECT_EQ(unknown.status, 2);
    EXPECT_EQ(unknown.output,
              "refpage: unknown command \"bogus\"; the commands are show, json, check, find, index, site, docset\n");
    ToolRun const none = refpage("");
    EXPECT_EQ(none.status, 2);
    EXPECT_TRUE(contains(none.output, "a command is required")) << none.output;
    EXPECT_EQ(refpage("json").status, 2);
    EXPECT_EQ(refpage("check --no-such-flag x").status, 2);
    for (char const* command : {"--help", "show --help", "json --help", "check --help", "find --help"}) {
        ToolRun const run = refpage(command);
        EXPECT_EQ(run.status, 0) << command;
        EXPECT_TRUE(contains(run.output, "Usage")) << command;
    }
    EXPECT_TRUE(contains(refpage("--help").output, "Exit status: 0"));
}

TEST(RefpageTool, HelpAndReadmeListEveryEnumerationKeyTheLibraryAccepts) {
    std::string help = refpage("--help").output;
    for (std::size_t wrap = help.find(",\n    "); wrap != std::string::npos; wrap = help.find(",\n    "))
        help.replace(wrap, 6, ", ");
    std::string const readme = readFile(std::filesystem::path(REFPROP_SOURCE_DIR) / "README.md");
    for (auto const* info : reference::glue::allEnumerations()) {
        std::string keys;
        for (auto const& member : info->members)
            keys += (keys.empty() ? "" : ", ") +
                    fmt::format("{} ({})", member.key.empty() ? std::string_view("\"\"") : member.key, member.value);
        EXPECT_TRUE(contains(help, fmt::format("  {}: {}\n", info->className, keys))) << keys << "\n" << help;
        EXPECT_TRUE(contains(readme, fmt::format("| `{}` | {} |\n", info->className, keys))) << keys;
    }
}

TEST(RefpageTool, AFailedWriteToStandardOutputIsAnErrorWithStatusOne) {
    testvalues::ScratchFolder const folder;
    // Larger than the output buffer, so that the write fails before the end of the run.
    std::string const big =
        folder.write("big.json", R"({"Purpose": ")" + std::string(100000, 'a') + R"("})").string();
    for (std::string const& arguments :
         {"json " + data("good/minimal.json"), "json " + big, std::string("show"), "show " + big,
          "check " + data("good/minimal.json"), std::string("--help"), std::string("--version")}) {
        ToolRun const run = refpage(arguments, "2>&1 >/dev/full");
        EXPECT_EQ(run.status, 1) << arguments;
        EXPECT_EQ(run.output, "refpage: cannot write the output: No space left on device\n") << arguments;
    }
}

TEST(RefpageTool, AClosedPipeIsAnErrorWhenSigpipeIsIgnoredAndAQuietDeathOtherwise) {
    std::string const show = std::string(REFPAGE_BINARY) + " show";
    ToolRun const ignored = testvalues::runShell("bash -c 'trap \"\" PIPE; { sleep 0.3; " + show +
                                                 "; echo \"status $?\" >&2; } | true' 2>&1");
    EXPECT_EQ(ignored.output, "refpage: cannot write the output: Broken pipe\nstatus 1\n");
    ToolRun const killed =
        testvalues::runShell("bash -c '{ sleep 0.3; " + show + "; echo \"status $?\" >&2; } | true' 2>&1");
    EXPECT_EQ(killed.output, "status 141\n") << "killed by SIGPIPE, nothing said";
}

}  // namespace
