// The page format: what loads into which record through the host and what is
// written back out; every kind of bad or hostile text (nesting far beyond any
// page, hundreds of thousands of keys, text after the page, foreign encodings,
// control characters) reported with where and what, in time and memory
// proportional to the text.
#include <fmt/format.h>
#include <gtest/gtest.h>

#include <fstream>
#include <reference/property/RefItem.hpp>
#include <refpage/format/Loader.hpp>
#include <refpage/format/Parser.hpp>
#include <refpage/format/Json.hpp>
#include <refpage/format/Writer.hpp>
#include <sstream>
#include <string>

#include "support/HostTest.hpp"
#include "support/Files.hpp"

namespace {

using namespace reference::property;
using namespace std::string_literals;
using refpage::Json;
using refpage::LoadResult;
using refpage::PageError;

class PageFormat : public HostTest {
protected:
    static LoadResult load(std::string const& text) { return refpage::loadPage(text, "test.json"); }
    /// Loads `text`, failing the test on any error.
    static LoadResult loadGood(std::string const& text) {
        LoadResult result = load(text);
        for (auto const& error : result.errors) ADD_FAILURE() << error.describe();
        return result;
    }
    /// The one error that loading `text` must give; a page loaded anyway fails the test.
    static PageError onlyError(std::string const& text) {
        LoadResult const result = load(text);
        EXPECT_FALSE(result.ok());
        EXPECT_EQ(result.errors.size(), 1u);
        return result.errors.empty() ? PageError{} : result.errors.front();
    }
    static RefItem const& page(LoadResult const& result) { return refpage::nativePage(result.page.get()); }
    static Json written(LoadResult const& result) { return Json::parse(refpage::pageText(result.page.get())); }
};

TEST_F(PageFormat, MissingKeysKeepTheInitialValuesAndEmptyListsStayEmpty) {
    LoadResult const result = loadGood(R"({"RefEntities": [{"Name": "only.a.name"}], "Outputs": [],
        "SyntaxGroups": [{"Syntaxes": []}], "InputGroups": [{"Inputs": [{"Values": []}]}]})");
    ASSERT_TRUE(result.ok());
    RefItem const& item = page(result);
    EXPECT_EQ(item.getDeprecationStatus(), DeprecationStatus::Current);
    EXPECT_TRUE(item.getHref().empty());
    ASSERT_EQ(item.getRefEntities().size(), 1u);
    EXPECT_EQ(item.getRefEntities()[0].getRefEntityType(), RefEntityType::Unknown);
    EXPECT_EQ(item.getRefEntities()[0].getFunctionType(), FunctionType::NA);
    EXPECT_TRUE(item.getOutputs().empty());
    ASSERT_EQ(item.getSyntaxGroups().size(), 1u);
    EXPECT_TRUE(item.getSyntaxGroups()[0].getSyntaxes().empty());
    Json const json = written(result);
    EXPECT_EQ(json["DeprecationStatus"], "current");
    EXPECT_EQ(json["RefEntities"][0]["FunctionType"], "n/a");
    EXPECT_EQ(json["RefEntities"][0]["RefEntityType"], 27) << "the member whose key is empty is written as its number";
    EXPECT_EQ(json["AppThumbnail"], (Json{{"FileRef", ""}, {"Alt", ""}}));
    EXPECT_EQ(json["Outputs"], Json::array());
    EXPECT_EQ(json["SyntaxGroups"][0]["Syntaxes"], Json::array());
    EXPECT_EQ(json["InputGroups"][0]["Inputs"][0]["Values"], Json::array());
}

TEST_F(PageFormat, TextsKeepEveryCodeUnitAndComeBackAsTheSameUtf8) {
    LoadResult const result = loadGood("{\"Purpose\": \"\xF0\x9D\x84\x9E and \\ud834\\udd1e\", "
                                       R"("Examples": [{"OpenCommand": "a\u0000b"}]})");
    ASSERT_TRUE(result.ok());
    EXPECT_EQ(page(result).getPurpose(), u"\U0001D11E and \U0001D11E");
    EXPECT_EQ(page(result).getPurpose().size(), 9u) << "surrogate pairs";
    EXPECT_EQ(written(result)["Purpose"], "\xF0\x9D\x84\x9E and \xF0\x9D\x84\x9E");
    EXPECT_EQ(page(result).getExamples()[0].getOpenCommand(), std::u16string(u"a\0b", 3));
    EXPECT_NE(refpage::pageText(result.page.get()).find(R"("a\u0000b")"), std::string::npos);
    LoadResult const controls = loadGood(R"({"Purpose": "\u001b]0;pwned\u0007\u001b[31m"})");
    EXPECT_EQ(page(controls).getPurpose(), u"\x1b]0;pwned\x07\x1b[31m");
}

TEST_F(PageFormat, KeysAndNumbersNameTheSameEnumerationValues) {
    LoadResult const byKey = loadGood(R"({"DeprecationStatus": "warn", "SyntaxGroups": [{"SyntaxType": "usage"}]})");
    LoadResult const byNumber = loadGood(R"({"DeprecationStatus": 2, "SyntaxGroups": [{"SyntaxType": [1]}]})");
    ASSERT_TRUE(byKey.ok() && byNumber.ok());
    EXPECT_TRUE(byKey.warnings.empty());
    EXPECT_TRUE(page(byKey) == page(byNumber));
    EXPECT_EQ(page(byKey).getSyntaxGroups()[0].getSyntaxType(), SyntaxType::Usage);
    EXPECT_EQ(written(byNumber)["DeprecationStatus"], "warn") << "members are written by their keys";
}

TEST_F(PageFormat, NumbersAndKeysThatNameNoMemberAreStoredWithAWarning) {
    LoadResult const numbers = loadGood(R"({"DeprecationStatus": 40, "RefEntities": [{"RefEntityType": 4294967295}]})");
    ASSERT_TRUE(numbers.ok());
    EXPECT_EQ(static_cast<std::uint32_t>(page(numbers).getDeprecationStatus()), 40u);
    EXPECT_EQ(written(numbers)["RefEntities"][0]["RefEntityType"], 4294967295u);
    ASSERT_EQ(numbers.warnings.size(), 2u);
    EXPECT_EQ(numbers.warnings[0].describe(refpage::Severity::Warning), "test.json:1:23: warning: 40 names no member of "
                                                       "DeprecationStatus; stored 40 (Current) [/DeprecationStatus]");
    EXPECT_EQ(numbers.warnings[1].path, "/RefEntities/0/RefEntityType");

    LoadResult const keys = loadGood(R"({"RefEntities": [{"RefEntityType": "Function", "FunctionType": "n/a"}]})");
    ASSERT_TRUE(keys.ok());
    EXPECT_EQ(page(keys).getRefEntities()[0].getRefEntityType(), RefEntityType::Unknown);
    ASSERT_EQ(keys.warnings.size(), 1u);  // "n/a" is FunctionType's own default key
    EXPECT_EQ(keys.warnings[0].describe(refpage::Severity::Warning),
              "test.json:1:36: warning: \"Function\" names no member of RefEntityType; stored 27 (Unknown); did you "
              "mean \"function\"? [/RefEntities/0/RefEntityType]");

    LoadResult const strict = refpage::loadPage(R"({"DeprecationStatus": "obsolete"})", "s.json", {.strict = true});
    EXPECT_FALSE(strict.ok()) << "strict mode makes warnings errors and loads nothing";
    ASSERT_EQ(strict.errors.size(), 1u);
    EXPECT_EQ(strict.errors[0].path, "/DeprecationStatus");
    EXPECT_TRUE(strict.warnings.empty());
}

TEST_F(PageFormat, WrittenPagesLoadBackToEqualPagesAndTheSameText) {
    auto const file = [](char const* name) { return testvalues::readFile(testvalues::data(name)); };
    std::string const escapes = R"({"Purpose": "\"q\" \\ \b\f\n\r\t \u0001\u001f\u007f \u00e4",
                                     "SyntaxGroups": [{"Syntaxes": ["a", "b"]}, {}]})";
    for (std::string const& input : {file("good/full.json"), file("good/minimal.json"), file("good/unicode.json"),
                                     escapes}) {
        SCOPED_TRACE(input);
        LoadResult const first = loadGood(input);
        ASSERT_TRUE(first.ok());
        std::string const text = refpage::pageText(first.page.get());
        EXPECT_EQ(Json::parse(text).dump(1, ' ', false, Json::error_handler_t::strict), text)
            << "written in the layout of the JSON library's own dump";
        LoadResult const second = loadGood(text);
        ASSERT_TRUE(second.ok());
        EXPECT_TRUE(page(first) == page(second));
        EXPECT_EQ(refpage::pageText(second.page.get()), text);
    }
}

TEST_F(PageFormat, ALargePageWrittenInPiecesIsExactlyItsWholeText) {
    LoadResult const loaded = loadGood(std::string(R"({"InputGroups": [{"Inputs": [)") +
                                       [] {
                                           std::string inputs;
                                           for (int i = 0; i < 3000; ++i)
                                               inputs += (i == 0 ? "" : ",") + std::string(R"({"Name": "argument é"})");
                                           return inputs;
                                       }() +
                                       "]}]}");
    ASSERT_TRUE(loaded.ok());
    std::vector<std::string> pieces;
    refpage::writePageText(loaded.page.get(), [&](std::string_view piece) { pieces.emplace_back(piece); });
    EXPECT_GT(pieces.size(), 2u);
    std::string joined;
    for (auto const& piece : pieces) {
        EXPECT_LE(piece.size(), std::size_t{80} << 10) << "a piece is about 64 KiB";
        joined += piece;
    }
    EXPECT_EQ(joined, refpage::pageText(loaded.page.get()));
}

std::string withThirdInput(std::string const& member) {
    return R"({"InputGroups": [{"Inputs": [{}, {}, {)" + member + "}]}]}";
}

std::string nested(std::size_t depth, std::string const& inner = {}) {
    return std::string(depth, '[') + inner + std::string(depth, ']');
}

/// Each text gives exactly one error whose description begins as given: position, message and pointer
/// (page text escaped). Rows that end early leave the rest to the JSON parser's own words.
TEST_F(PageFormat, EachBadTextGivesOneErrorSayingWhereAndWhat) {
    std::string const nonScalar = "Value must be a scalar: expected exactly one element. [Ovrin:class:RequireScalar]";
    std::string const enumeration = "; expected a DeprecationStatus key or an unsigned 32-bit number";
    std::pair<std::string, std::string> const cases[] = {
        // Values of the wrong type, named by pointer and quoted (nested values only in part, escaped).
        {withThirdInput(R"("Name": 5)"), "1:47: error: expected a string, found number 5 [/InputGroups/0/Inputs/2/Name]"},
        {withThirdInput(R"("IsNameValuePair": "yes")"),
         R"(1:58: error: expected a bool, found string "yes" [/InputGroups/0/Inputs/2/IsNameValuePair])"},
        {"{\n \"Href\": \"x\",\n \"Outputs\": [{\"Name\": \"o\"},\n  {\"Values\": [\"a\", null]}]}",
         "4:20: error: expected a string, found null [/Outputs/1/Values/1]"},
        {R"({"Outputs": {}})", "1:13: error: expected an array of objects, found object {} [/Outputs]"},
        {R"({"Outputs": [3]})", "1:14: error: expected an object, found number 3 [/Outputs/0]"},
        {R"({"AppThumbnail": []})", "1:18: error: expected an object, found array [] [/AppThumbnail]"},
        {R"({"DeprecationStatus": true})", "1:23: error: expected a DeprecationStatus key or an unsigned 32-bit "
                                           "number, found boolean true [/DeprecationStatus]"},
        {R"({"Purpose": null})", "1:13: error: expected a string, found null [/Purpose]"},
        {R"({"Href": {"a": [1, "\u001b]0;x"]}})",
         R"(1:10: error: expected a string, found object {"a": [1, "\u001b]0;x"]} [/Href])"},
        {"{\"Href\": [\n\"a long value quoted only in part, never more than forty bytes\"]}",
         R"(1:10: error: expected a string, found array [\n"a long value quoted only in part, nev... [/Href])"},
        {R"({"Href":)" + nested(refpage::maxNesting - 1, "1") + "}",
         "1:9: error: expected a string, found array " + std::string(40, '[') + "... [/Href]"},
        {"[]", "1:1: error: expected an object (a page), found array []"},
        {"{\n\"SyntaxGroups\": [{\"SyntaxType\": []}]}", "2:33: error: " + nonScalar + " [/SyntaxGroups/0/SyntaxType]"},
        {withThirdInput(R"("SyntaxType": ["usage", "n/a"])"),
         "1:53: error: " + nonScalar + " [/InputGroups/0/Inputs/2/SyntaxType]"},
        // Numbers that are no unsigned 32-bit integer are called what they are.
        {R"({"DeprecationStatus": 4294967296})",
         "1:23: error: 4294967296 is outside the unsigned 32-bit range [/DeprecationStatus]"},
        {R"({"DeprecationStatus": 99999999999999999999999})",
         "1:23: error: 99999999999999999999999 is outside the unsigned 32-bit range [/DeprecationStatus]"},
        {R"({"DeprecationStatus": -1})", "1:23: error: -1 is a negative number" + enumeration + " [/DeprecationStatus]"},
        {R"({"DeprecationStatus": -99999999999999999999999})",
         "1:23: error: -99999999999999999999999 is a negative number" + enumeration + " [/DeprecationStatus]"},
        {R"({"DeprecationStatus": 1.0})", "1:23: error: 1.0 is a floating-point number" + enumeration +
                                              " [/DeprecationStatus]"},
        {R"({"DeprecationStatus": 1e30})", "1:23: error: 1e30 is a floating-point number" + enumeration +
                                               " [/DeprecationStatus]"},
        // Keys: unknown ones with a suggestion when one is near, repeated ones; keys and pointers escaped.
        {withThirdInput(R"("Nmae": "x")"),
         R"(1:39: error: unknown key "Nmae" in an Input record; did you mean "Name"? [/InputGroups/0/Inputs/2/Nmae])"},
        {R"({"Titel": ""})", R"(1:2: error: unknown key "Titel" in a RefItem record [/Titel])"},
        {R"({"a/b~c": 1})", R"(1:2: error: unknown key "a/b~c" in a RefItem record [/a~1b~0c])"},
        {"{\"H\u00e4ref\\u0007\": 1}",
         "1:2: error: unknown key \"H\u00e4ref\\x07\" in a RefItem record [/H\u00e4ref\\x07]"},
        {R"({"\u001b[31m\u009b": 1})", R"(1:2: error: unknown key "\x1b[31m\x9b" in a RefItem record [/\x1b[31m\x9b])"},
        {withThirdInput(R"("Name": "a", "Purpose": "", "Name": "b")"),
         R"(1:67: error: duplicate key "Name" [/InputGroups/0/Inputs/2/Name])"},
        {R"({"AppThumbnail": {"Alt": "", "Alt": ""}})", R"(1:30: error: duplicate key "Alt" [/AppThumbnail/Alt])"},
        // Text that is no JSON, or no UTF-8: the position of the fault, never its raw bytes.
        {"{\n  \"Href\": tru,\n}", "2:14: error: malformed JSON: syntax error"},
        {R"({"Href": 8888e888})", "1:10: error: malformed JSON: number overflow parsing '8888e888'"},
        {"{\"Href\": \"ok\xFF\"}", "1:"},
        {R"({"Href": "\ud800"})", "1:"},
        {R"({"Href": "\udc00x"})", "1:"},
        {"{\"Purpose\": \"a\x1b b\"}", "1:"},
        // Nesting beyond the limit is refused where it is crossed: the page is level 1, the 64th "[" level 65.
        {R"({"Href":)" + nested(48000) + "}", "1:72: error: nesting deeper than 64 levels [/Href]"},
        {[] {
             std::string text;
             for (int i = 0; i < 48000; ++i) text += R"({"x":)";
             return text + std::string(48000, '}');
         }(),
         "1:321: error: nesting deeper than 64 levels [/x]"},
        // Only whitespace may follow the page's one value; a NUL byte is named.
        {"{\"Href\": \"x\"}\0junk"s, "1:14: error: malformed JSON: a NUL byte after the page's value"},
        {"{}\n\0"s, "2:1: error: malformed JSON: a NUL byte after the page's value"},
        {R"({"Href": "x"} {"Href": "y"})", "1:15: error: malformed JSON"},
        {"{\"Href\": \0\"x\"}"s, "1:10: error: malformed JSON: a NUL byte in the text"},
        // A byte order mark other than UTF-8's names the encoding; UTF-8's is skipped but counted.
        {"\xFF\xFE{\0}\0"s, "1:1: error: file is UTF-16 (little-endian), pages must be UTF-8"},
        {"\xFE\xFF\0{\0}"s, "1:1: error: file is UTF-16 (big-endian), pages must be UTF-8"},
        {"\xFF\xFE\0\0{\0\0\0}\0\0\0"s, "1:1: error: file is UTF-32 (little-endian), pages must be UTF-8"},
        {"\0\0\xFE\xFF\0\0\0{\0\0\0}"s, "1:1: error: file is UTF-32 (big-endian), pages must be UTF-8"},
        {"\xEF\xBB\xBF{\"Href\": 1}", "1:13: error: expected a string, found number 1 [/Href]"},
    };
    // Where the message goes on in the parser's words, it still names what is wrong.
    std::pair<char const*, char const*> const parserWords[] = {
        {"\xFF", "UTF-8"}, {"\\ud", "surrogate"}, {"\x1b", "control character"}};
    for (auto const& [text, described] : cases) {
        SCOPED_TRACE(text.substr(0, 200));
        std::string const shown = onlyError(text).describe();
        EXPECT_EQ(shown.substr(0, described.size() + 10), "test.json:" + described) << "(the beginning compared)";
        for (auto const& [sign, named] : parserWords)
            EXPECT_TRUE(text.find(sign) == std::string::npos || shown.find(named) != std::string::npos) << shown;
        for (char const raw : {'\xFF', '\x1b'}) EXPECT_EQ(shown.find(raw), std::string::npos) << "raw bytes shown";
    }
    EXPECT_TRUE(load("{}\n\t \r\n").ok());
    LoadResult const bom = loadGood("\xEF\xBB\xBF{\"Purpose\": \"p\"}");
    ASSERT_TRUE(bom.ok());
    EXPECT_EQ(page(bom).getPurpose(), u"p");
}

TEST_F(PageFormat, DescribeLeavesOutWhatIsUnknownAndEscapesThePointer) {
    EXPECT_EQ((PageError{"f.json", {}, "no such file"}.describe()), "f.json: error: no such file");
    EXPECT_EQ((PageError{"f.json", "/a\x1b[31m", "m", 1, 2}.describe(refpage::Severity::Warning)), "f.json:1:2: warning: m [/a\\x1b[31m]");
}

TEST_F(PageFormat, EveryErrorOfAPageIsReportedInPageOrderAndARepeatedKeysValueIsNotRead) {
    LoadResult const result = load(R"({"Href": 1, "Bogus": 2, "Outputs": [{"Values": "x"}]})");
    ASSERT_EQ(result.errors.size(), 3u);
    EXPECT_EQ(result.errors[0].path, "/Href");
    EXPECT_EQ(result.errors[1].path, "/Bogus");
    EXPECT_EQ(result.errors[2].path, "/Outputs/0/Values");

    LoadResult const repeated =
        load(R"({"Outputs": [{"Name": "a"}, {"Name": "b"}], "Href": "x", "Outputs": [{"Href": "", "Href": ""}]})");
    ASSERT_EQ(repeated.errors.size(), 1u);
    EXPECT_EQ(repeated.errors[0].describe(), R"(test.json:1:58: error: duplicate key "Outputs" [/Outputs])");
    LoadResult const unknown = load(R"({"a/b": 1, "a/b": 2, "a/b": 3})");
    ASSERT_EQ(unknown.errors.size(), 3u);
    EXPECT_EQ(unknown.errors[1].message, R"(duplicate key "a/b")");
    EXPECT_EQ(unknown.errors[2].column, 22u);
}

TEST_F(PageFormat, HundredsOfThousandsOfKeysOrWarningsGiveACappedList) {
    std::string text = "{";
    for (int i = 0; i < 300000; ++i) text += (i == 0 ? "" : ",") + fmt::format(R"("k{}":0)", i);
    LoadResult const unknown = load(text + "}");
    ASSERT_EQ(unknown.errors.size(), refpage::maxReported + 1);
    EXPECT_EQ(unknown.errors[0].message, R"(unknown key "k0" in a RefItem record)");
    EXPECT_EQ(unknown.errors.back().message, "299900 more not listed");
    EXPECT_NE(unknown.errors.back().line, 0u);

    std::string repeated = "{";
    for (int i = 0; i < 300000; ++i) repeated += (i == 0 ? "" : ",") + R"("Href":"a")"s;
    LoadResult const duplicates = load(repeated + "}");
    ASSERT_EQ(duplicates.errors.size(), refpage::maxReported + 1);
    EXPECT_EQ(duplicates.errors[0].describe(), R"(test.json:1:13: error: duplicate key "Href" [/Href])");
    EXPECT_EQ(duplicates.errors.back().message, "299899 more not listed");

    std::string entities = R"({"RefEntities": [)";
    for (int i = 0; i < 150; ++i) entities += (i == 0 ? "" : ",") + R"({"RefEntityType": "functon"})"s;
    LoadResult const warned = load(entities + "]}");
    ASSERT_TRUE(warned.ok());
    ASSERT_EQ(warned.warnings.size(), refpage::maxReported + 1);
    EXPECT_EQ(warned.warnings[99].path, "/RefEntities/99/RefEntityType");
    EXPECT_EQ(warned.warnings.back().message, "50 more not listed");
}

TEST_F(PageFormat, ManyElementsAndLongTextsLoad) {
    std::string text = R"({"RefEntities": [)";
    for (int i = 0; i < 100000; ++i) text += (i == 0 ? "" : ",") + R"({"Name": "e"})"s;
    LoadResult const result = loadGood(text + R"(], "Description": ")" + std::string(1 << 22, 'd') + "\"}");
    ASSERT_TRUE(result.ok());
    EXPECT_EQ(page(result).getRefEntities().size(), 100000u);
    EXPECT_EQ(page(result).getDescription().size(), std::size_t{1} << 22);
}

}  // namespace
