// Hostile page texts: nesting far beyond any page, hundreds of thousands of keys,
// text after the page, foreign encodings and control characters. Each gets a
// clear error with its position (or loads, where legal), in time and memory
// proportional to the text.
#include <fmt/format.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <reference/property/RefItem.hpp>
#include <refpage/PageLoader.hpp>
#include <refpage/PageParser.hpp>
#include <string>

#include "support/HostTest.hpp"

namespace {

using refpage::LoadResult;
using refpage::PageError;
using namespace std::string_literals;

class InputLimits : public HostTest {
protected:
    static LoadResult load(std::string const& text) { return refpage::loadPage(text, "hostile.json"); }

    static PageError onlyError(std::string const& text) {
        LoadResult const result = load(text);
        EXPECT_FALSE(result.ok());
        EXPECT_EQ(result.errors.size(), 1u);
        return result.errors.empty() ? PageError{} : result.errors.front();
    }
};

std::string nested(std::size_t depth, std::string const& inner = {}) {
    return std::string(depth, '[') + inner + std::string(depth, ']');
}

TEST_F(InputLimits, NestingBeyondTheLimitIsRefusedWhereItIsCrossed) {
    // The page is level 1, so the 64th "[" of the value is the 65th level.
    PageError const error = onlyError(R"({"Href":)" + nested(48000) + "}");
    EXPECT_EQ(error.message, "nesting deeper than 64 levels");
    EXPECT_EQ(error.path, "/Href");
    EXPECT_EQ(error.line, 1u);
    EXPECT_EQ(error.column, 9u + 63u);

    PageError const objects = onlyError([] {
        std::string text;
        for (int i = 0; i < 48000; ++i) text += R"({"x":)";
        return text + std::string(48000, '}');
    }());
    EXPECT_EQ(objects.message, "nesting deeper than 64 levels");
    EXPECT_EQ(objects.path, "/x");
}

TEST_F(InputLimits, NestingUpToTheLimitIsReadAndQuotedOnlyInPart) {
    PageError const error = onlyError(R"({"Href":)" + nested(refpage::maxNesting - 1, "1") + "}");
    EXPECT_EQ(error.path, "/Href");
    EXPECT_EQ(error.message, "expected a string, found array " + std::string(40, '[') + "...");
}

TEST_F(InputLimits, HundredsOfThousandsOfKeysInOneObjectGiveACappedListOfErrors) {
    std::string text = "{";
    for (int i = 0; i < 300000; ++i) text += (i == 0 ? "" : ",") + fmt::format(R"("k{}":0)", i);
    text += "}";
    LoadResult const unknown = load(text);
    ASSERT_EQ(unknown.errors.size(), refpage::maxReported + 1);
    EXPECT_EQ(unknown.errors[0].message, R"(unknown key "k0" in a RefItem record)");
    EXPECT_EQ(unknown.errors.back().message, "299900 more not listed");
    EXPECT_NE(unknown.errors.back().line, 0u);

    std::string repeated = "{";
    for (int i = 0; i < 300000; ++i) repeated += (i == 0 ? "" : ",") + R"("Href":"a")"s;
    LoadResult const duplicates = load(repeated + "}");
    ASSERT_EQ(duplicates.errors.size(), refpage::maxReported + 1);
    EXPECT_EQ(duplicates.errors[0].message, R"(duplicate key "Href")");
    EXPECT_EQ(duplicates.errors[0].column, 13u);
    EXPECT_EQ(duplicates.errors.back().message, "299899 more not listed");
}

TEST_F(InputLimits, WarningsAreCappedLikeErrors) {
    std::string text = R"({"RefEntities": [)";
    for (int i = 0; i < 150; ++i) text += (i == 0 ? "" : ",") + R"({"RefEntityType": "functon"})"s;
    LoadResult const result = load(text + "]}");
    ASSERT_TRUE(result.ok());
    ASSERT_EQ(result.warnings.size(), refpage::maxReported + 1);
    EXPECT_EQ(result.warnings[99].path, "/RefEntities/99/RefEntityType");
    EXPECT_EQ(result.warnings.back().message, "50 more not listed");
}

TEST_F(InputLimits, ManyElementsAndLongTextsLoad) {
    std::string text = R"({"RefEntities": [)";
    for (int i = 0; i < 100000; ++i) text += (i == 0 ? "" : ",") + R"({"Name": "e"})"s;
    text += R"(], "Description": ")" + std::string(1 << 22, 'd') + "\"}";
    LoadResult const result = load(text);
    ASSERT_TRUE(result.ok());
    auto const& page = refpage::nativePage(result.page.get());
    EXPECT_EQ(page.getRefEntities().size(), 100000u);
    EXPECT_EQ(page.getDescription().size(), std::size_t{1} << 22);
}

TEST_F(InputLimits, OnlyWhitespaceMayFollowThePage) {
    EXPECT_TRUE(load("{}\n\t \r\n").ok());
    PageError const nul = onlyError("{\"Href\": \"x\"}\0junk"s);
    EXPECT_EQ(nul.message, "malformed JSON: a NUL byte after the page's value");
    EXPECT_EQ(nul.column, 14u);
    EXPECT_EQ(onlyError("{}\n\0"s).line, 2u);
    PageError const junk = onlyError(R"({"Href": "x"} {"Href": "y"})");
    EXPECT_EQ(junk.column, 15u);
    EXPECT_NE(junk.message.find("malformed JSON"), std::string::npos);
    EXPECT_EQ(onlyError("{\"Href\": \0\"x\"}"s).message, "malformed JSON: a NUL byte in the text");
}

TEST_F(InputLimits, ByteOrderMarksOtherThanUtf8sNameTheEncoding) {
    struct Case {
        std::string text, encoding;
    };
    Case const cases[] = {
        {"\xFF\xFE{\0}\0"s, "UTF-16 (little-endian)"},
        {"\xFE\xFF\0{\0}"s, "UTF-16 (big-endian)"},
        {"\xFF\xFE\0\0{\0\0\0}\0\0\0"s, "UTF-32 (little-endian)"},
        {"\0\0\xFE\xFF\0\0\0{\0\0\0}"s, "UTF-32 (big-endian)"},
    };
    for (auto const& c : cases) {
        PageError const error = onlyError(c.text);
        EXPECT_EQ(error.message, "file is " + c.encoding + ", pages must be UTF-8");
        EXPECT_EQ(error.line, 1u);
    }
}

TEST_F(InputLimits, AUtf8ByteOrderMarkIsSkippedAndPositionsCountItsBytes) {
    LoadResult const result = load("\xEF\xBB\xBF{\"Purpose\": \"p\"}");
    ASSERT_TRUE(result.ok());
    EXPECT_EQ(refpage::nativePage(result.page.get()).getPurpose(), u"p");
    EXPECT_EQ(onlyError("\xEF\xBB\xBF{\"Href\": 1}").column, 13u);
}

TEST_F(InputLimits, ControlCharactersAreKeptInTextsAndEscapedInMessages) {
    LoadResult const result = load(R"({"Purpose": "\u001b]0;pwned\u0007\u001b[31m"})");
    ASSERT_TRUE(result.ok());
    EXPECT_EQ(refpage::nativePage(result.page.get()).getPurpose(), u"\x1b]0;pwned\x07\x1b[31m");

    PageError const key = onlyError(R"({"\u001b[31m\u009b": 1})");
    EXPECT_EQ(key.describe(), "hostile.json:1:2: error: unknown key \"\\x1b[31m\\x9b\" in a RefItem record "
                              "[/\\x1b[31m\\x9b]");
    PageError const raw = onlyError("{\"Purpose\": \"a\x1b b\"}");
    EXPECT_NE(raw.message.find("control character"), std::string::npos) << raw.message;
    EXPECT_EQ(raw.describe().find('\x1b'), std::string::npos);
}

TEST(InputLimitsThroughTheTool, EveryHostilePageOfAFolderIsReportedAndTheRunEndsWithOne) {
    namespace fs = std::filesystem;
    fs::path const folder = fs::temp_directory_path() / ("refpage_hostile_" + std::to_string(::getpid()));
    fs::create_directories(folder);
    auto const write = [&folder](std::string const& name, std::string const& text) {
        std::ofstream(folder / name, std::ios::binary) << text;
    };
    write("deep.json", R"({"Href":)" + nested(48000) + "}");
    write("nul.json", "{}\0junk"s);
    write("utf16.json", "\xFF\xFE{\0}\0"s);
    write("good.json", R"({"Purpose": "\u001b]0;pwned\u0007"})");
    std::string const command = std::string(REFPAGE_BINARY) + " check " + folder.string() + " 2>&1";
    FILE* const pipe = popen(command.c_str(), "r");
    ASSERT_NE(pipe, nullptr);
    std::string output;
    char buffer[4096];
    while (std::size_t const read = std::fread(buffer, 1, sizeof buffer, pipe)) output.append(buffer, read);
    int const status = pclose(pipe);
    fs::remove_all(folder);
    ASSERT_TRUE(WIFEXITED(status)) << "ended by a signal: " << output;
    EXPECT_EQ(WEXITSTATUS(status), 1) << output;
    EXPECT_NE(output.find("deep.json:1:72: error: nesting deeper than 64 levels [/Href]"), std::string::npos) << output;
    EXPECT_NE(output.find("nul.json:1:3: error: malformed JSON: a NUL byte after the page's value"), std::string::npos);
    EXPECT_NE(output.find("utf16.json:1:1: error: file is UTF-16 (little-endian), pages must be UTF-8"), std::string::npos);
    EXPECT_NE(output.find("4 pages, 3 failed"), std::string::npos) << output;
}

}  // namespace
