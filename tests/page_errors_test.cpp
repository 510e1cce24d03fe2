// Bad pages: every kind of bad input is reported with where and what, and a page
// that fails to load leaves nothing behind in the host.
#include <gtest/gtest.h>

#include <refpage/PageLoader.hpp>
#include <string>

#include "support/HostTest.hpp"

namespace {

using refpage::LoadResult;
using refpage::PageError;

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
    EXPECT_EQ(error.describe().rfind("bad.json:2:14: malformed JSON: syntax error", 0), 0u) << error.describe();
}

TEST_F(PageErrors, NumberBeyondDoubleRangeIsMalformedJson) {
    PageError const error = onlyError(R"({"Href": 8888e888})");
    EXPECT_EQ(error.describe(), "bad.json: malformed JSON: number overflow parsing '8888e888'");
}

TEST_F(PageErrors, UnknownKeyIsReportedWithItsPath) {
    PageError const error = onlyError(withThirdInput(R"("Nmae": "x")"));
    EXPECT_EQ(error.describe(), "bad.json: /InputGroups/0/Inputs/2/Nmae: unknown key \"Nmae\" in an Input record");
}

TEST_F(PageErrors, ValueOfTheWrongTypeNamesPathAndExpectedType) {
    struct Case {
        std::string text, path, message;
    };
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
        {R"([])", "", "expected an object (a page), found array"},
    };
    for (auto const& c : cases) {
        SCOPED_TRACE(c.text);
        PageError const error = onlyError(c.text);
        EXPECT_EQ(error.path, c.path);
        EXPECT_EQ(error.message, c.message);
    }
}

TEST_F(PageErrors, NumbersOutsideTheUnsigned32BitRangeAreRefused) {
    for (char const* number : {"4294967296", "-1", "1.5", "1e30"}) {
        SCOPED_TRACE(number);
        PageError const error = onlyError(std::string(R"({"DeprecationStatus": )") + number + "}");
        EXPECT_EQ(error.path, "/DeprecationStatus");
        EXPECT_NE(error.message.find("outside the unsigned 32-bit range"), std::string::npos) << error.message;
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

TEST_F(PageErrors, NonScalarEnumerationReportsTheLibraryErrorWithItsPath) {
    for (char const* value : {R"([])", R"(["usage", "n/a"])"}) {
        SCOPED_TRACE(value);
        PageError const error = onlyError(withThirdInput(std::string(R"("SyntaxType": )") + value));
        EXPECT_EQ(error.path, "/InputGroups/0/Inputs/2/SyntaxType");
        EXPECT_EQ(error.message, "Value must be a scalar: expected exactly one element. [Ovrin:class:RequireScalar]");
    }
}

TEST_F(PageErrors, EveryErrorOfAPageIsReportedInPageOrder) {
    LoadResult const result = refpage::loadPage(R"({"Href": 1, "Bogus": 2, "Outputs": [{"Values": "x"}]})", "bad.json");
    ASSERT_EQ(result.errors.size(), 3u);
    EXPECT_EQ(result.errors[0].path, "/Href");
    EXPECT_EQ(result.errors[1].path, "/Bogus");
    EXPECT_EQ(result.errors[2].path, "/Outputs/0/Values");
}

TEST_F(PageErrors, KeysWithSlashOrTildeAreEscapedInPaths) {
    EXPECT_EQ(onlyError(R"({"a/b~c": 1})").path, "/a~1b~0c");
}

}  // namespace
