// What `show` and the tables put on a terminal: widths in terminal columns, cut
// cells within their width, lines and indentation kept.
#include <gtest/gtest.h>

#include <refpage/terminal/DisplayWidth.hpp>
#include <refpage/format/Loader.hpp>
#include <refpage/format/PageTitle.hpp>
#include <refpage/terminal/PageView.hpp>
#include <refpage/terminal/TextTable.hpp>
#include <utf8.h>
#include <string>
#include <vector>

#include "support/HostTest.hpp"
#include "support/Files.hpp"

namespace {

using refpage::displayWidth;
using refpage::fitWidth;
using refpage::TextTable;
using testvalues::contains;
using testvalues::lines;

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

}  // namespace
