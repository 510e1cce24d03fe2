// The refpage tool as a user runs it: output and exit status of each command.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <regex>
#include <refpage/Json.hpp>
#include <string>

namespace {

struct ToolRun {
    int status = -1;
    std::string output;  ///< stdout and stderr together
};

/// Runs the built tool with `arguments` (shell words).
ToolRun refpage(std::string const& arguments) {
    std::string const command = std::string(REFPAGE_BINARY) + " " + arguments + " 2>&1";
    ToolRun run;
    FILE* const pipe = popen(command.c_str(), "r");
    if (pipe == nullptr) return run;
    std::array<char, 4096> buffer{};
    std::size_t count = 0;
    while ((count = fread(buffer.data(), 1, buffer.size(), pipe)) > 0) run.output.append(buffer.data(), count);
    int const status = pclose(pipe);
    run.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return run;
}

std::string data(std::string const& name) {
    return std::string(REFPAGE_TEST_DATA) + "/" + name;
}

bool contains(std::string const& text, std::string const& part) {
    return text.find(part) != std::string::npos;
}

TEST(RefpageTool, ShowWithoutAFilePrintsTheBundledSamplePage) {
    ToolRun const run = refpage("show");
    EXPECT_EQ(run.status, 0) << run.output;
    EXPECT_EQ(run.output.rfind("numpy.add\n=========\nAdd arguments element-wise.\n", 0), 0u) << run.output;
    EXPECT_TRUE(contains(run.output, "numpy.add (Function, Simple)"));
    EXPECT_TRUE(contains(run.output, "where (name-value)"));
    EXPECT_TRUE(std::regex_search(run.output, std::regex("\n  Status +Current\n")));
}

TEST(RefpageTool, ShowNamesEnumerationValuesByTheirDisplayText) {
    ToolRun const run = refpage("show " + data("good/unicode.json"));
    EXPECT_EQ(run.status, 0) << run.output;
    EXPECT_TRUE(contains(run.output, "(Class, Constructor)")) << run.output;
    EXPECT_TRUE(std::regex_search(run.output, std::regex("\n  Status +Warn\n")));
    EXPECT_TRUE(contains(run.output, "[CreateObject]"));
}

TEST(RefpageTool, JsonWritesTheCanonicalPageWithEnumerationsAsNumbers) {
    ToolRun const run = refpage("json " + data("good/minimal.json"));
    ASSERT_EQ(run.status, 0) << run.output;
    refpage::Json const page = refpage::Json::parse(run.output);
    EXPECT_EQ(page.size(), 15u);
    EXPECT_EQ(page["RefEntities"][0]["RefEntityType"], 0);
    EXPECT_EQ(page["DeprecationStatus"], 0);
    EXPECT_EQ(page.begin().key(), "Href");
}

TEST(RefpageTool, CheckPassesGoodPagesAndReportsEachBadPageAndFails) {
    ToolRun const good = refpage("check " + data("good"));
    EXPECT_EQ(good.status, 0) << good.output;
    EXPECT_TRUE(contains(good.output, "2 pages, 0 failed, 0 unresolved links, 0 shared Hrefs, 0 duplicate names (")) << good.output;
    ToolRun const run = refpage("check " + data("bad") + " " + data("good"));
    EXPECT_EQ(run.status, 1) << run.output;
    EXPECT_TRUE(contains(run.output, "malformed.json:3:26: malformed JSON: syntax error")) << run.output;
    EXPECT_TRUE(contains(run.output, "wrong_type.json: /InputGroups/0/Inputs/1/Name: expected a string, found array"))
        << run.output;
    EXPECT_TRUE(contains(run.output,
                         R"(duplicate_key.json: /InputGroups/0/Inputs/1/Name: duplicate key "Name")"))
        << run.output;
    EXPECT_TRUE(contains(run.output, "5 pages, 3 failed, 0 unresolved links, 0 shared Hrefs, 0 duplicate names ("));
}

TEST(RefpageTool, WarningsArePrintedAndFailOnlyWithStrict) {
    ToolRun const lenient = refpage("check " + data("warning"));
    EXPECT_EQ(lenient.status, 0) << lenient.output;
    EXPECT_TRUE(contains(lenient.output, "warning: ")) << lenient.output;
    EXPECT_TRUE(contains(lenient.output, "/RefEntities/0/RefEntityType: \"widget\" names no member of RefEntityType"));
    ToolRun const strict = refpage("check --strict " + data("warning"));
    EXPECT_EQ(strict.status, 1) << strict.output;
    EXPECT_EQ(refpage("show --strict " + data("warning/unknown_member.json")).status, 1);
}

TEST(RefpageTool, BadPagesAndMissingFilesExitWithOne) {
    ToolRun const show = refpage("show " + data("bad/wrong_type.json"));
    EXPECT_EQ(show.status, 1);
    EXPECT_FALSE(contains(show.output, "demo.wrong")) << "a page that failed is never printed";
    EXPECT_EQ(refpage("check " + data("no/such/folder")).status, 1);
}

TEST(RefpageTool, ShowAndJsonSayWhenTheirFileIsAFolderOrMissing) {
    for (char const* command : {"show ", "json "}) {
        ToolRun const folder = refpage(command + data("good"));
        EXPECT_EQ(folder.status, 1);
        EXPECT_EQ(folder.output, "error: " + data("good") + ": is a folder, expected a page file\n");
        ToolRun const missing = refpage(command + data("no/such.json"));
        EXPECT_EQ(missing.status, 1);
        EXPECT_EQ(missing.output, "error: " + data("no/such.json") + ": no such file\n");
    }
}

TEST(RefpageTool, FindListsMatchingPagesAsATable) {
    ToolRun const run = refpage("find minimal " + data("good"));
    EXPECT_EQ(run.status, 0) << run.output;
    EXPECT_TRUE(contains(run.output, "Name")) << run.output;
    EXPECT_TRUE(contains(run.output, "demo.minimal  Function  Simple    no")) << run.output;
    EXPECT_TRUE(contains(run.output, "1 of 2 entries"));
    EXPECT_FALSE(contains(run.output, "demo.clef"));
}

TEST(RefpageTool, UsageErrorsExitWithTwoAndHelpWithZero) {
    EXPECT_EQ(refpage("").status, 2);
    EXPECT_EQ(refpage("frobnicate").status, 2);
    EXPECT_EQ(refpage("json").status, 2);
    EXPECT_EQ(refpage("check --no-such-flag x").status, 2);
    for (char const* command : {"--help", "show --help", "json --help", "check --help", "find --help"}) {
        ToolRun const run = refpage(command);
        EXPECT_EQ(run.status, 0) << command;
        EXPECT_TRUE(contains(run.output, "Usage")) << command;
    }
}

}  // namespace
