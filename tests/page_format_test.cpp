// The page format: what loads into which record through the host, and what is
// written back out, for the shapes that real pages and hand-written pages take;
// and bad pages, each kind of bad input reported with where and what.
#include <gtest/gtest.h>

#include <fstream>
#include <reference/property/RefItem.hpp>
#include <refpage/PageCheck.hpp>
#include <refpage/PageLoader.hpp>
#include <refpage/PageParser.hpp>
#include <refpage/PageWriter.hpp>
#include <sstream>
#include <string>

#include "support/HostTest.hpp"

namespace {

using namespace reference::property;
using refpage::Json;
using refpage::LoadResult;
using refpage::PageError;

std::string dataPage(std::string const& name) {
    std::ifstream file(std::string(REFPAGE_TEST_DATA) + "/" + name);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

class PageFormat : public HostTest {
protected:
    /// Loads `text`, failing the test on any error.
    LoadResult load(std::string const& text) {
        LoadResult result = refpage::loadPage(text, "test.json");
        for (auto const& error : result.errors) ADD_FAILURE() << error.describe();
        return result;
    }
    static RefItem const& page(LoadResult const& result) { return refpage::nativePage(result.page.get()); }
    static Json written(LoadResult const& result) { return refpage::pageToJson(result.page.get()); }
};

TEST_F(PageFormat, MissingKeysKeepTheInitialValues) {
    LoadResult const result = load(R"({"RefEntities": [{"Name": "only.a.name"}]})");
    ASSERT_TRUE(result.ok());
    RefItem const& item = page(result);
    EXPECT_EQ(item.getDeprecationStatus(), DeprecationStatus::Current);
    EXPECT_TRUE(item.getHref().empty());
    ASSERT_EQ(item.getRefEntities().size(), 1u);
    EXPECT_EQ(item.getRefEntities()[0].getRefEntityType(), RefEntityType::Unknown);
    EXPECT_EQ(item.getRefEntities()[0].getFunctionType(), FunctionType::NA);
    Json const json = written(result);
    EXPECT_EQ(json["DeprecationStatus"], "current");
    EXPECT_EQ(json["RefEntities"][0]["FunctionType"], "n/a");
    EXPECT_EQ(json["RefEntities"][0]["RefEntityType"], 27) << "the member whose key is empty is written as its number";
    EXPECT_EQ(json["AppThumbnail"], (Json{{"FileRef", ""}, {"Alt", ""}}));
}

TEST_F(PageFormat, EmptyListsLoadAndWriteAsEmptyArrays) {
    LoadResult const result =
        load(R"({"Outputs": [], "SyntaxGroups": [{"Syntaxes": []}], "InputGroups": [{"Inputs": [{"Values": []}]}]})");
    ASSERT_TRUE(result.ok());
    RefItem const& item = page(result);
    EXPECT_TRUE(item.getOutputs().empty());
    ASSERT_EQ(item.getSyntaxGroups().size(), 1u);
    EXPECT_TRUE(item.getSyntaxGroups()[0].getSyntaxes().empty());
    Json const json = written(result);
    EXPECT_EQ(json["Outputs"], Json::array());
    EXPECT_EQ(json["SyntaxGroups"][0]["Syntaxes"], Json::array());
    EXPECT_EQ(json["InputGroups"][0]["Inputs"][0]["Values"], Json::array());
}

TEST_F(PageFormat, NonBmpCharactersBecomeSurrogatePairsAndComeBackAsTheSameUtf8) {
    LoadResult const result = load("{\"Purpose\": \"\xF0\x9D\x84\x9E and \\ud834\\udd1e\"}");
    ASSERT_TRUE(result.ok());
    EXPECT_EQ(page(result).getPurpose(), u"\U0001D11E and \U0001D11E");
    EXPECT_EQ(page(result).getPurpose().size(), 9u);
    EXPECT_EQ(written(result)["Purpose"], "\xF0\x9D\x84\x9E and \xF0\x9D\x84\x9E");
}

TEST_F(PageFormat, EmbeddedZeroCodeUnitsAreKept) {
    LoadResult const result = load(R"({"Examples": [{"OpenCommand": "a\u0000b"}]})");
    ASSERT_TRUE(result.ok());
    EXPECT_EQ(page(result).getExamples()[0].getOpenCommand(), std::u16string(u"a\0b", 3));
    EXPECT_NE(refpage::jsonText(written(result)).find(R"("a\u0000b")"), std::string::npos);
}

TEST_F(PageFormat, KeysAndNumbersNameTheSameEnumerationValues) {
    LoadResult const byKey = load(R"({"DeprecationStatus": "warn", "SyntaxGroups": [{"SyntaxType": "usage"}]})");
    LoadResult const byNumber = load(R"({"DeprecationStatus": 2, "SyntaxGroups": [{"SyntaxType": [1]}]})");
    ASSERT_TRUE(byKey.ok() && byNumber.ok());
    EXPECT_TRUE(byKey.warnings.empty());
    EXPECT_TRUE(page(byKey) == page(byNumber));
    EXPECT_EQ(page(byKey).getSyntaxGroups()[0].getSyntaxType(), SyntaxType::Usage);
    EXPECT_EQ(written(byNumber)["DeprecationStatus"], "warn") << "members are written by their keys";
}

TEST_F(PageFormat, NumbersThatNameNoMemberAreStoredAsGivenWithAWarning) {
    LoadResult const result = load(R"({"DeprecationStatus": 40, "RefEntities": [{"RefEntityType": 4294967295}]})");
    ASSERT_TRUE(result.ok());
    EXPECT_EQ(static_cast<std::uint32_t>(page(result).getDeprecationStatus()), 40u);
    EXPECT_EQ(written(result)["RefEntities"][0]["RefEntityType"], 4294967295u);
    ASSERT_EQ(result.warnings.size(), 2u);
    EXPECT_EQ(result.warnings[0].path, "/DeprecationStatus");
    EXPECT_EQ(result.warnings[0].message, "40 names no member of DeprecationStatus; stored 40 (Current)");
    EXPECT_EQ(result.warnings[1].path, "/RefEntities/0/RefEntityType");
}

TEST_F(PageFormat, KeysThatNameNoMemberStoreTheDefaultWithAWarning) {
    LoadResult const result = load(R"({"RefEntities": [{"RefEntityType": "Function", "FunctionType": "n/a"}]})");
    ASSERT_TRUE(result.ok());
    EXPECT_EQ(page(result).getRefEntities()[0].getRefEntityType(), RefEntityType::Unknown);
    ASSERT_EQ(result.warnings.size(), 1u);  // "n/a" is FunctionType's own default key
    EXPECT_EQ(result.warnings[0].describe("warning"),
              "test.json:1:36: warning: \"Function\" names no member of RefEntityType; stored 27 (Unknown); did you "
              "mean \"function\"? [/RefEntities/0/RefEntityType]");
}

TEST_F(PageFormat, StrictModeMakesWarningsErrorsAndLoadsNothing) {
    LoadResult const result = refpage::loadPage(R"({"DeprecationStatus": "obsolete"})", "s.json", {.strict = true});
    EXPECT_FALSE(result.ok());
    ASSERT_EQ(result.errors.size(), 1u);
    EXPECT_EQ(result.errors[0].path, "/DeprecationStatus");
    EXPECT_TRUE(result.warnings.empty());
}

TEST_F(PageFormat, WrittenPagesLoadBackToEqualPagesAndTheSameText) {
    std::string const escapes = R"({"Purpose": "\"q\" \\ \b\f\n\r\t \u0001\u001f\u007f \u00e4",
                                     "SyntaxGroups": [{"Syntaxes": ["a", "b"]}, {}]})";
    for (std::string const& input : {dataPage("good/full.json"), dataPage("good/minimal.json"), dataPage("good/unicode.json"), escapes}) {
        SCOPED_TRACE(input);
        LoadResult const first = load(input);
        ASSERT_TRUE(first.ok());
        std::string const text = refpage::jsonText(written(first));
        EXPECT_EQ(refpage::pageText(first.page.get()), text) << "written in the layout of the JSON library's own dump";
        LoadResult const second = load(text);
        ASSERT_TRUE(second.ok());
        EXPECT_TRUE(page(first) == page(second));
        EXPECT_EQ(refpage::jsonText(written(second)), text);
    }
}

class PageErrors : public HostTest {
protected:
    /// The one error that loading `text` must give; a page loaded anyway fails the test.
    static PageError onlyError(std::string const& text) {
        LoadResult const result = refpage::loadPage(text, "bad.json");
        EXPECT_FALSE(result.ok());
        EXPECT_EQ(result.errors.size(), 1u);
        return result.errors.empty() ? PageError{} : result.errors.front();
    }
};

constexpr char const* threeInputs = R"({"InputGroups": [{"Inputs": [{}, {}, {%s}]}]})";

std::string withThirdInput(std::string const& member) {
    std::string text = threeInputs;
    return text.replace(text.find("%s"), 2, member);
}

TEST_F(PageErrors, MalformedJsonIsReportedByLineAndColumn) {
    PageError const error = onlyError("{\n  \"Href\": tru,\n}");
    EXPECT_EQ(error.line, 2u);
    EXPECT_EQ(error.column, 14u);
    EXPECT_EQ(error.describe().rfind("bad.json:2:14: error: malformed JSON: syntax error", 0), 0u) << error.describe();
    EXPECT_EQ(onlyError(R"({"Href": 8888e888})").column, 10u) << "a number out of range points at its start";
}

TEST_F(PageErrors, EveryErrorNamesItsLineColumnAndPointer) {
    std::string const text = "{\n \"Href\": \"x\",\n \"Outputs\": [{\"Name\": \"o\"},\n  {\"Values\": [\"a\", null]}]}";
    PageError const error = onlyError(text);
    EXPECT_EQ(error.describe(), "bad.json:4:20: error: expected a string, found null [/Outputs/1/Values/1]");
    EXPECT_EQ(error.describe("warning").find("bad.json:4:20: warning: "), 0u);
}

TEST_F(PageErrors, DescribeLeavesOutWhatIsUnknownAndEscapesThePointer) {
    EXPECT_EQ((PageError{"f.json", {}, "no such file"}.describe()), "f.json: error: no such file");
    EXPECT_EQ((PageError{"f.json", "/a\x1b[31m", "m", 1, 2}.describe()), "f.json:1:2: error: m [/a\\x1b[31m]");
}

TEST_F(PageErrors, BuildErrorsCarryThePositionOfTheValue) {
    PageError const error = onlyError("{\n\"SyntaxGroups\": [{\"SyntaxType\": []}]}");
    EXPECT_EQ(error.path, "/SyntaxGroups/0/SyntaxType");
    EXPECT_EQ(error.line, 2u);
    EXPECT_EQ(error.column, 33u);
}

TEST_F(PageErrors, BadValuesAndKeysNameTheirPathAndWhatWasExpected) {
    struct Case {
        std::string text, path, message;
    };
    std::string const nonScalar = "Value must be a scalar: expected exactly one element. [Ovrin:class:RequireScalar]";
    Case const cases[] = {
        {withThirdInput(R"("Name": 5)"), "/InputGroups/0/Inputs/2/Name", "expected a string, found number 5"},
        {withThirdInput(R"("IsNameValuePair": "yes")"), "/InputGroups/0/Inputs/2/IsNameValuePair",
         R"(expected a bool, found string "yes")"},
        {withThirdInput(R"("Values": ["a", null])"), "/InputGroups/0/Inputs/2/Values/1",
         "expected a string, found null"},
        {R"({"Outputs": {}})", "/Outputs", "expected an array of objects, found object {}"},
        {R"({"Outputs": [3]})", "/Outputs/0", "expected an object, found number 3"},
        {R"({"AppThumbnail": []})", "/AppThumbnail", "expected an object, found array []"},
        {R"({"DeprecationStatus": true})", "/DeprecationStatus",
         "expected a DeprecationStatus key or an unsigned 32-bit number, found boolean true"},
        {R"({"Purpose": null})", "/Purpose", "expected a string, found null"},
        {R"({"Href": {"a": [1, "\u001b]0;x"]}})", "/Href", R"(expected a string, found object {"a": [1, "\u001b]0;x"]})"},
        {"{\"Href\": [\n\"a long value quoted only in part, never more than forty bytes\"]}", "/Href",
         R"(expected a string, found array [\n"a long value quoted only in part, nev...)"},
        {R"([])", "", "expected an object (a page), found array []"},
        {R"({"Href": 8888e888})", "", "malformed JSON: number overflow parsing '8888e888'"},
        {withThirdInput(R"("Nmae": "x")"), "/InputGroups/0/Inputs/2/Nmae",
         R"(unknown key "Nmae" in an Input record; did you mean "Name"?)"},
        {R"({"Titel": ""})", "/Titel", R"(unknown key "Titel" in a RefItem record)"},
        {R"({"a/b~c": 1})", "/a~1b~0c", R"(unknown key "a/b~c" in a RefItem record)"},
        {"{\"H\u00e4ref\\u0007\": 1}", "/H\u00e4ref\u0007", "unknown key \"H\u00e4ref\\x07\" in a RefItem record"},
        {withThirdInput(R"("SyntaxType": [])"), "/InputGroups/0/Inputs/2/SyntaxType", nonScalar},
        {withThirdInput(R"("SyntaxType": ["usage", "n/a"])"), "/InputGroups/0/Inputs/2/SyntaxType", nonScalar},
        {withThirdInput(R"("Name": "a", "Purpose": "", "Name": "b")"), "/InputGroups/0/Inputs/2/Name",
         R"(duplicate key "Name")"},
        {R"({"AppThumbnail": {"Alt": "", "Alt": ""}})", "/AppThumbnail/Alt", R"(duplicate key "Alt")"},
    };
    for (auto const& c : cases) {
        SCOPED_TRACE(c.text);
        PageError const error = onlyError(c.text);
        EXPECT_EQ(error.path, c.path);
        EXPECT_EQ(error.message, c.message);
    }
}

TEST_F(PageErrors, EveryDuplicateKeyIsReportedAndTheSameKeyInSiblingObjectsIsNot) {
    LoadResult const result = refpage::loadPage(
        R"({"Outputs": [{"Name": "a"}, {"Name": "b"}], "Href": "x", "Outputs": [{"Href": "", "Href": ""}]})",
        "bad.json");
    ASSERT_EQ(result.errors.size(), 1u);  // the repeated key's value is not read
    EXPECT_EQ(result.errors[0].describe(), R"(bad.json:1:58: error: duplicate key "Outputs" [/Outputs])");

    LoadResult const unknown = refpage::loadPage(R"({"a/b": 1, "a/b": 2, "a/b": 3})", "bad.json");
    ASSERT_EQ(unknown.errors.size(), 3u);
    EXPECT_EQ(unknown.errors[1].message, R"(duplicate key "a/b")");
    EXPECT_EQ(unknown.errors[2].column, 22u);
}

TEST_F(PageErrors, NumbersThatAreNoUnsigned32BitIntegerAreCalledWhatTheyAre) {
    std::string const expected = "; expected a DeprecationStatus key or an unsigned 32-bit number";
    std::pair<char const*, std::string> const cases[] = {
        {"4294967296", "4294967296 is outside the unsigned 32-bit range"},
        {"99999999999999999999999", "99999999999999999999999 is outside the unsigned 32-bit range"},
        {"-1", "-1 is a negative number" + expected},
        {"-99999999999999999999999", "-99999999999999999999999 is a negative number" + expected},
        {"1.0", "1.0 is a floating-point number" + expected},
        {"1e30", "1e30 is a floating-point number" + expected},
    };
    for (auto const& [number, message] : cases) {
        SCOPED_TRACE(number);
        PageError const error = onlyError(std::string(R"({"DeprecationStatus": )") + number + "}");
        EXPECT_EQ(error.path, "/DeprecationStatus");
        EXPECT_EQ(error.message, message);
    }
}

TEST_F(PageErrors, InvalidUtf8IsReportedWithoutPrintingTheBadBytes) {
    PageError const error = onlyError("{\"Href\": \"ok\xFF\"}");
    EXPECT_EQ(error.line, 1u);
    EXPECT_NE(error.message.find("UTF-8"), std::string::npos) << error.message;
    EXPECT_EQ(error.describe().find('\xFF'), std::string::npos);
}

TEST_F(PageErrors, UnpairedSurrogateEscapeIsReported) {
    for (char const* text : {R"({"Href": "\ud800"})", R"({"Href": "\udc00x"})"}) {
        PageError const error = onlyError(text);
        EXPECT_NE(error.message.find("surrogate"), std::string::npos) << error.message;
    }
}

TEST_F(PageErrors, EveryErrorOfAPageIsReportedInPageOrder) {
    LoadResult const result = refpage::loadPage(R"({"Href": 1, "Bogus": 2, "Outputs": [{"Values": "x"}]})", "bad.json");
    ASSERT_EQ(result.errors.size(), 3u);
    EXPECT_EQ(result.errors[0].path, "/Href");
    EXPECT_EQ(result.errors[1].path, "/Bogus");
    EXPECT_EQ(result.errors[2].path, "/Outputs/0/Values");
}

}  // namespace
