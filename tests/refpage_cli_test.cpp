// The refpage tool as a user runs it: commands, command-line conventions, exit
// status, and output that fails loudly.
#include <fmt/format.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <reference/glue/Enumerations.hpp>
#include <refpage/format/Json.hpp>
#include <refpage/terminal/DisplayWidth.hpp>
#include <regex>
#include <string>
#include <vector>

#include "support/ToolRun.hpp"

namespace {

using testvalues::contains;
using testvalues::data;
using testvalues::expectRun;
using testvalues::lines;
using testvalues::refpage;
using testvalues::ToolRun;
using namespace std::string_literals;


TEST(RefpageTool, ShowPrintsTheBundledSamplePageOrAFileWithDisplayTexts) {
    ToolRun const sample = expectRun("show", 0, {"refpage.check (Tool, Tool_Launcher)", "--strict (name-value)"});
    EXPECT_EQ(sample.output.rfind("refpage.check\n=============\nCheck that pages survive a round trip through the "
                                  "host.\n", 0), 0u) << sample.output;
    EXPECT_TRUE(std::regex_search(sample.output, std::regex("\n  Status +Current\n")));
    ToolRun const file = expectRun("show " + data("good/unicode.json"), 0, {"(Class, Constructor)", "[CreateObject]"});
    EXPECT_TRUE(std::regex_search(file.output, std::regex("\n  Status +Warn\n")));
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
    expectRun("check " + data("good"), 0, {"3 pages, 0 failed, 2 unresolved links, 0 shared Hrefs, 0 duplicate names ("});
    expectRun("check " + data("bad") + " " + data("good") + " --assets " + data("good"), 1,
              {"malformed.json:3:26: error: malformed JSON: syntax error",
               "wrong_type.json:3:73: error: expected a string, found array",
               R"(duplicate_key.json:3:99: error: duplicate key "Name" [/InputGroups/0/Inputs/1/Name])",
               "6 pages, 3 failed, 2 unresolved links, 0 shared Hrefs, 0 duplicate names ("});
}

TEST(RefpageTool, WarningsFailOnlyWithStrictGivenBeforeOrAfterTheCommand) {
    expectRun("check " + data("warning"), 0, {"warning: \"widget\" names no member of RefEntityType"});
    for (std::string const& arguments : {"--strict check " + data("warning"), "check --strict " + data("warning"),
                                         "check " + data("warning") + " --strict"})
        expectRun(arguments, 1, {"(strict mode)"});
    expectRun("show --strict " + data("warning/unknown_member.json"), 1);
    expectRun("-j 3 check " + data("good"), 0);
    expectRun("check --jobs 1 " + data("good"), 0);
    expectRun("check -j 0 " + data("good"), 2);  // at least one job
}

TEST(RefpageTool, QuietKeepsErrorsAndResultsOnly) {
    EXPECT_EQ(expectRun("-q check " + data("good"), 0).output, "");
    EXPECT_EQ(expectRun("check -q " + data("warning"), 0).output, "") << "no warnings";
    ToolRun const failed = expectRun("-q check " + data("bad/wrong_type.json"), 1,
                                     {"wrong_type.json:3:73: error: expected a string"});
    EXPECT_FALSE(contains(failed.output, "pages,")) << "no summary";
    EXPECT_FALSE(contains(expectRun("find -q minimal " + data("good"), 0, {"demo.minimal"}).output, " pages\n"));
}

TEST(RefpageTool, DashReadsThePageFromStandardInputOnce) {
    EXPECT_EQ(expectRun("json - < " + data("good/minimal.json"), 0).output,
              refpage("json " + data("good/minimal.json")).output);
    expectRun("check - " + data("good") + " < " + data("bad/wrong_type.json"), 1,
              {R"(<stdin>:3:73: error: expected a string, found array ["not", "a", "string"] )"
               "[/InputGroups/0/Inputs/1/Name]", "4 pages, 1 failed"});
    expectRun("show - < " + data("good/minimal.json"), 0, {"demo.minimal\n====="});
    expectRun("check - - < " + data("good/minimal.json"), 2, {"standard input (-) can be named only once"});
}

TEST(RefpageTool, JsonOutputFileIsReplacedOnlyByAPageThatLoaded) {
    namespace fs = std::filesystem;
    testvalues::ScratchFolder const folder;
    std::string const target = (folder / "out.json").string();
    EXPECT_EQ(expectRun("json -o " + target + " " + data("good/minimal.json"), 0).output, "");
    EXPECT_EQ(testvalues::readFile(target), refpage("json " + data("good/minimal.json")).output);
    fs::permissions(target, fs::perms::owner_read | fs::perms::owner_write);
    expectRun("json -o " + target + " " + data("good/unicode.json"), 0);
    EXPECT_EQ(fs::status(target).permissions(), fs::perms::owner_read | fs::perms::owner_write)
        << "a file replaced keeps its permissions";
    expectRun("json " + data("bad/wrong_type.json") + " --output " + target, 1);
    EXPECT_EQ(testvalues::readFile(target), refpage("json " + data("good/unicode.json")).output) << "left untouched";
    EXPECT_EQ(std::distance(fs::directory_iterator(folder.path()), {}), 1) << "no temporary left";
    expectRun("json -o " + (folder / "no/such/folder.json").string() + " " + data("good/minimal.json"), 1,
              {"No such file or directory"});
}

TEST(RefpageTool, ExitStatusSaysWhetherAPageFailedOrNothingWasFound) {
    EXPECT_FALSE(contains(expectRun("show " + data("bad/wrong_type.json"), 1).output, "demo.wrong"))
        << "a page that failed is never printed";
    expectRun("check " + data("no/such/folder"), 1);
    testvalues::ScratchFolder const empty;
    expectRun("check " + empty.path().string(), 1, {"error: no page found"});
    expectRun("find no-such-name " + data("good"), 1, {"nothing matches \"no-such-name\""});
    for (char const* command : {"show ", "json "}) {
        EXPECT_EQ(expectRun(command + data("good"), 1).output,
                  data("good") + ": error: is a folder, expected a page file\n");
        EXPECT_EQ(expectRun(command + data("no/such.json"), 1).output,
                  data("no/such.json") + ": error: No such file or directory\n");
    }
}

TEST(RefpageTool, FindListsMatchingPagesAsATable) {
    EXPECT_EQ(expectRun("find minimal " + data("good"), 0).output,
              "Name          Type      Function  Deprecated  Link               Purpose\n"
              "demo.minimal  Function  Simple    no          demo/minimal.html  The smallest page worth showing.\n"
              "1 of 7 entries\n");
}

TEST(RefpageTool, VersionHelpAndUsageErrors) {
    EXPECT_TRUE(std::regex_match(expectRun("--version", 0).output, std::regex("refpage [0-9]+\\.[0-9]+\\.[0-9]+\n")));
    EXPECT_EQ(expectRun("bogus", 2).output,
              "refpage: unknown command \"bogus\"; the commands are show, json, check, find, index, site, docset, inventory, schema\n");
    expectRun("", 2, {"a command is required"});
    expectRun("json", 2);
    expectRun("check --no-such-flag x", 2);
    for (char const* command : {"show --help", "json --help", "check --help", "find --help"})
        expectRun(command, 0, {"Usage"});
    expectRun("--help", 0, {"Usage", "Exit status: 0"});
}

TEST(RefpageTool, HelpAndThePageFormatReferenceListEveryEnumerationKeyTheLibraryAccepts) {
    std::string help = refpage("--help").output;
    for (std::size_t wrap = help.find(",\n    "); wrap != std::string::npos; wrap = help.find(",\n    "))
        help.replace(wrap, 6, ", ");
    std::string const formatReference = testvalues::readFile(std::filesystem::path(REFPROP_SOURCE_DIR) / "docs" / "page-format.md");
    for (auto const* info : reference::glue::allEnumerations()) {
        std::string keys;
        for (auto const& member : info->members)
            keys += (keys.empty() ? "" : ", ") +
                    fmt::format("{} ({})", member.key.empty() ? std::string_view("\"\"") : member.key, member.value);
        EXPECT_TRUE(contains(help, fmt::format("  {}: {}\n", info->className, keys))) << keys << "\n" << help;
        EXPECT_TRUE(contains(formatReference, fmt::format("| `{}` | {} |\n", info->className, keys))) << keys;
    }
}

TEST(RefpageTool, AFailedWriteIsAnErrorWithStatusOneAndAClosedPipeAQuietDeathUnlessIgnored) {
    testvalues::ScratchFolder const folder;
    // Larger than the output buffer, so that the write fails before the end of the run.
    std::string const big = folder.write("big.json", R"({"Purpose": ")" + std::string(100000, 'a') + R"("})").string();
    for (std::string const& arguments : {"json " + data("good/minimal.json"), "json " + big, std::string("show"),
                                         "show " + big, "check " + data("good/minimal.json"), std::string("--help"),
                                         std::string("--version")})
        EXPECT_EQ(expectRun(arguments, 1, {}, "2>&1 >/dev/full").output,
                  "refpage: cannot write the output: No space left on device\n");
    std::string const show = std::string(REFPAGE_BINARY) + " show";
    EXPECT_EQ(testvalues::runShell("bash -c 'trap \"\" PIPE; { sleep 0.3; " + show +
                                   "; echo \"status $?\" >&2; } | true' 2>&1").output,
              "refpage: cannot write the output: Broken pipe\nstatus 1\n");
    EXPECT_EQ(testvalues::runShell("bash -c '{ sleep 0.3; " + show + "; echo \"status $?\" >&2; } | true' 2>&1").output,
              "status 141\n") << "killed by SIGPIPE, nothing said";
}

/// The terminal column where `part` starts in `line`.
std::size_t columnOf(std::string const& line, std::string const& part) {
    return refpage::displayWidth(line.substr(0, line.find(part)));
}

TEST(RefpageTool, EveryHostilePageOfAFolderIsReportedAndTheRunEndsWithOne) {
    testvalues::ScratchFolder const folder;
    folder.write("deep.json", R"({"Href":)" + std::string(48000, '[') + std::string(48000, ']') + "}");
    folder.write("nul.json", "{}\0junk"s);
    folder.write("utf16.json", "\xFF\xFE{\0}\0"s);
    folder.write("good.json", R"({"Purpose": "\u001b]0;pwned\u0007"})");
    testvalues::ToolRun const run = testvalues::refpage("check " + folder.path().string());
    EXPECT_EQ(run.status, 1) << "-1 is a signal: " << run.output;
    for (char const* line : {"deep.json:1:72: error: nesting deeper than 64 levels [/Href]",
                             "nul.json:1:3: error: malformed JSON: a NUL byte after the page's value",
                             "utf16.json:1:1: error: file is UTF-16 (little-endian), pages must be UTF-8",
                             "4 pages, 3 failed"})
        EXPECT_TRUE(testvalues::contains(run.output, line)) << line << "\n" << run.output;
}

TEST(RefpageTool, ShowPageTextCannotReachTheTerminalRawAndWideCharactersLineUp) {
    testvalues::ScratchFolder const folder;
    auto const attack = folder.write("attack.json", R"({
 "RefEntities": [{"Name": "gr\u00fc\u00dfe\u001b[2J"}],
 "Purpose": "\u001b]0;pwned\u0007\u001b[31m red \u009b1m \u202e",
 "InputGroups": [{"Inputs": [{"Name": "x\u001b[1m", "Purpose": "in a table\u0007"}]}]
})");
    std::string const shown = testvalues::expectRun("show " + attack.string(), 0, {
        "\\x1b]0;pwned\\x07\\x1b[31m red \\x9b1m \\u202e\n", "gr\u00fc\u00dfe\\x1b[2J\n" /* valid UTF-8 as itself */,
        "x\\x1b[1m  ", "in a table\\x07"}).output;
    for (std::string const control : {"\x1b", "\x07", "\u009b"}) EXPECT_FALSE(contains(shown, control)) << shown;

    auto const wide = folder.write("wide.json", R"({"InputGroups": [{"Title": "Eingaben \u00fc", "Inputs": [
  {"Name": "\u5165\u529b", "Purpose": "wide"},
  {"Name": "n\u0303", "Purpose": "combining"},
  {"Name": "\ud83d\ude00 smile", "Purpose": "emoji"},
  {"Name": "ok", "Purpose": "ascii"}]}]})");
    std::vector<std::string> const table = lines(
        testvalues::expectRun("show " + wide.string(), 0, {"Eingaben \u00fc\n----------\n" /* as wide as the title */})
            .output);
    auto const column = [&](std::string const& part) {
        for (auto const& line : table)
            if (contains(line, part)) return columnOf(line, part);
        return std::string::npos;
    };
    ASSERT_NE(column("wide"), std::string::npos);
    for (char const* purpose : {"combining", "ascii", "emoji"}) EXPECT_EQ(column(purpose), column("wide")) << purpose;
}

}  // namespace
