// What `show` and the tables put on a terminal: widths in terminal columns, cut
// cells within their width, lines and indentation kept, page text escaped.
#include <gtest/gtest.h>

#include <refpage/terminal/DisplayWidth.hpp>
#include <refpage/format/Loader.hpp>
#include <refpage/format/PageTitle.hpp>
#include <refpage/terminal/PageView.hpp>
#include <refpage/terminal/TextTable.hpp>
#include <utf8.h>
#include <sstream>
#include <string>
#include <vector>

#include "support/HostTest.hpp"
#include "support/ToolRun.hpp"

namespace {

using refpage::displayWidth;
using refpage::fitWidth;
using refpage::TextTable;
using testvalues::contains;

std::vector<std::string> lines(std::string const& text) {
    std::vector<std::string> result;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) result.push_back(line);
    return result;
}

/// The terminal column where `part` starts in `line`.
std::size_t columnOf(std::string const& line, std::string const& part) {
    return displayWidth(line.substr(0, line.find(part)));
}

TEST(DisplayWidth, CountsTerminalColumnsPerGraphemeCluster) {
    EXPECT_EQ(displayWidth("plain"), 5u);
    EXPECT_EQ(displayWidth("\u4E2D\u6587"), 4u) << "CJK";
    EXPECT_EQ(displayWidth("\U0001F600"), 2u) << "emoji";
    EXPECT_EQ(displayWidth("e\u0301"), 1u) << "combining mark";
    EXPECT_EQ(displayWidth("a\u200Bb"), 2u) << "zero-width space";
    EXPECT_EQ(displayWidth("\U0001F468\u200D\U0001F469\u200D\U0001F467"), 2u) << "emoji sequence";
    EXPECT_EQ(displayWidth("\U0001F1EB\U0001F1F7"), 2u) << "flag";
    EXPECT_EQ(displayWidth("\u2764\uFE0F"), 2u) << "emoji presentation";
    EXPECT_EQ(displayWidth("\\x1b[31m"), 8u) << "an escape counts as what it shows";
}

TEST(DisplayWidth, FitNeverSplitsAClusterOrExceedsTheWidth) {
    EXPECT_EQ(fitWidth("\u4E2D\u6587\u5B57", 3), "\u4E2D");
    EXPECT_EQ(fitWidth("e\u0301xy", 1), "e\u0301");
    EXPECT_EQ(fitWidth("abc", 10), "abc");
    EXPECT_EQ(fitWidth("\U0001F600", 1), "");
}

TEST(TextTable, CutCellsNeverExceedTheirWidth) {
    TextTable table({"A", "B"}, 8);
    table.addRow({"abcdefghij", "x"});
    table.addRow({"abcdefgh", "x"});
    table.addRow({"\u4E2D\u6587\u4E2D\u6587\u4E2D\u6587", "x"});
    table.addRow({"\U0001F600\U0001F600\U0001F600\U0001F600\U0001F600", "the last column is never cut at all"});
    std::vector<std::string> const rendered = lines(table.render(0));
    ASSERT_EQ(rendered.size(), 5u);
    EXPECT_EQ(rendered[1], "abcde...  x");
    EXPECT_EQ(rendered[2], "abcdefgh  x") << "a cell exactly as wide as allowed stays whole";
    EXPECT_EQ(rendered[3], "\u4E2D\u6587...   x");
    EXPECT_TRUE(contains(rendered[4], "never cut at all"));
    for (std::size_t row = 1; row < 4; ++row) EXPECT_EQ(displayWidth(rendered[row]), 8u + 2u + 1u) << rendered[row];
}

TEST(TextTable, AMultiLineCellMakesItsRowThatManyLinesTall) {
    TextTable table({"Name", "Values", "Purpose"});
    table.addRow({"x", "one\n\ttwo", "first\nsecond\nthird"});
    table.addRow({"y", "z", "w"});
    EXPECT_EQ(table.render(0),
              "Name  Values       Purpose\n"
              "x     one          first\n"
              "              two  second\n"
              "                   third\n"
              "y     z            w\n");
}

class PageDisplay : public HostTest {};

TEST_F(PageDisplay, ThePageIsTitledByItsFirstNamedEntityElseItsHref) {
    auto const title = [](char const* text) {
        refpage::LoadResult const result = refpage::loadPage(text, "<test>");
        return result.ok() ? refpage::pageTitle(refpage::nativePage(result.page.get())) : std::string("not loaded");
    };
    EXPECT_EQ(title(R"({"Href": "a.html", "RefEntities": [{"Name": "first"}, {"Name": "second"}]})"), "first");
    EXPECT_EQ(title(R"({"Href": "a.html", "RefEntities": [{"Name": ""}]})"), "a.html");
    EXPECT_EQ(title("{}"), "Untitled page");
}

TEST_F(PageDisplay, DescriptionLinesKeepTheirIndentationUnderTheHeading) {
    refpage::LoadResult const result = refpage::loadPage(
        R"({"Description": "Adds numbers.\n\n    add(1, 2)\n  returns 3", "Purpose": "One.\nTwo."})", "<test>");
    ASSERT_TRUE(result.ok());
    std::string const shown = refpage::renderPage(refpage::nativePage(result.page.get()));
    EXPECT_TRUE(contains(shown, "\nOne.\nTwo.\n")) << shown;
    EXPECT_TRUE(contains(shown, "Description\n-----------\n  Adds numbers.\n\n      add(1, 2)\n    returns 3\n"))
        << shown;
}

TEST(RefpageShow, PageTextCannotReachTheTerminalRawAndWideCharactersLineUp) {
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
