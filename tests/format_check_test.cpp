// The page check: which comparisons it makes, and that running out of memory
// anywhere in parsing, building or checking is the page's failure, never an
// escaped exception or a leak.
#include <gtest/gtest.h>

#include <cstdlib>
#include <new>
#include <optional>
#include <refpage/format/Check.hpp>
#include <refpage/format/Digest.hpp>
#include <refpage/format/Loader.hpp>
#include <refpage/format/Writer.hpp>
#include <string>
#include <vector>


#include "support/Files.hpp"
#include "support/HostTest.hpp"

namespace {

/// Allocations left before the one that fails; 0 when no failure is armed.
std::size_t allocationsBeforeFailure = 0;
bool allocationFailed = false;

void* allocate(std::size_t size) {
    if (allocationsBeforeFailure != 0 && --allocationsBeforeFailure == 0) {
        allocationFailed = true;
        throw std::bad_alloc();
    }
    if (void* memory = std::malloc(size == 0 ? 1 : size)) return memory;
    throw std::bad_alloc();
}

}  // namespace

void* operator new(std::size_t size) {
    return allocate(size);
}
void* operator new[](std::size_t size) {
    return allocate(size);
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete[](void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
    std::free(memory);
}

namespace {

constexpr char const* page = R"page({
 "Href": "demo/checked.html",
 "RefEntities": [{"Name": "demo.checked", "RefEntityType": "function"}],
 "Purpose": "A page with a little of everything.",
 "AppThumbnail": {"Alt": "a thumbnail"},
 "SyntaxGroups": [{"Title": "Syntax", "SyntaxType": "usage", "Syntaxes": ["checked(x)", "checked(x, y)"]}],
 "InputGroups": [{"Title": "Inputs", "Inputs": [{"Name": "x", "Values": ["a", "b"], "IsNameValuePair": true}]}]
})page";

class PageCheck : public HostTest {};

TEST_F(PageCheck, ComparesBothReadBacksTheCopyAndTheReloadedPage) {
    refpage::CheckReport const report = refpage::checkPage(page, "checked.json");
    ASSERT_TRUE(report.passed()) << report.failures.front().describe();
    EXPECT_EQ(report.comparisons, (std::vector<std::string_view>{refpage::readThroughHost, refpage::readThroughNative,
                                                                 refpage::copied, refpage::reloaded}));
    // Every value of every record, the left-out keys too, once per read-back: the page's 16
    // (5 texts, 1 enumeration, 8 list sizes, 2 thumbnail texts), the entity's 3, the syntax
    // group's 5 (2 syntaxes), the input group's 2, the input's 9 (2 values).
    EXPECT_EQ(report.valuesCompared, 2u * (16 + 3 + 5 + 2 + 9));
}

TEST_F(PageCheck, APageInTheWrittenFormPassesAsAnyOther) {
    refpage::LoadResult const loaded = refpage::loadPage(page, "checked.json");
    ASSERT_TRUE(loaded.ok());
    std::string const written = refpage::pageText(loaded.page.get()) + "\n";
    refpage::CheckReport const report = refpage::checkPage(written, "written.json");
    ASSERT_TRUE(report.passed()) << report.failures.front().describe();
    EXPECT_EQ(report.comparisons.size(), 4u);
}

// The written text is read back and compared with the page through a digest of their values,
// taken from the page as the host holds it and from the text as read.
std::size_t digestOfHost(refpage::LoadResult const& loaded) {
    return refpage::valuesDigest(loaded.page.get());
}

std::size_t digestOfText(std::string const& text) {
    refpage::ParsedPage const parsed = refpage::parsePage(text, "digest.json");
    EXPECT_TRUE(parsed.ok());
    return refpage::valuesDigest(parsed.root);
}

TEST_F(PageCheck, ThePagesValuesGiveOneDigestHoweverTheyAreHeld) {
    refpage::LoadResult const loaded = refpage::loadPage(page, "checked.json");
    ASSERT_TRUE(loaded.ok());
    std::size_t const digest = digestOfHost(loaded);
    EXPECT_EQ(digestOfText(page), digest);
    EXPECT_EQ(digestOfText(refpage::pageText(loaded.page.get())), digest);
    // A key given at its initial value holds the same values as the key left out.
    std::string withInitial = page;
    withInitial.insert(withInitial.find(R"("Purpose")"), R"("Description": "", "DeprecationStatus": "current", )");
    EXPECT_EQ(digestOfText(withInitial), digest);
}

TEST_F(PageCheck, AnyOtherValueAnywhereGivesAnotherDigest) {
    std::size_t const digest = digestOfText(page);
    auto const changed = [](std::string_view from, std::string_view to) {
        std::string text = page;
        text.replace(text.find(from), from.size(), to);
        return text;
    };
    for (std::string const& other :
         {changed(R"("b"])", R"("c"])"), changed(R"(["a", "b"])", R"(["a"])"), changed(R"("x")", R"("y")"),
          changed(R"("IsNameValuePair": true)", R"("IsNameValuePair": false)"), changed(R"("usage")", R"("none")"),
          changed(R"("function")", R"("class")"), changed(R"("a thumbnail")", R"("")"),
          changed(R"x("checked(x)", )x", "")})
        EXPECT_NE(digestOfText(other), digest) << other;
}

/// The one report and page href checkEach gives for one page in memory, with pages asked for.
struct CheckedOne {
    refpage::CheckReport report;
    std::optional<std::u16string> href;  ///< of the page the visitor saw, when it saw one
};

/// Checks `inputs` into `checked` through the one path every command takes.
void checkInto(std::vector<refpage::PageInput> const& inputs, CheckedOne& checked) {
    refpage::checkEach(inputs, 1, {}, true, [&](std::size_t, refpage::CheckReport&& report, refpage::LoadResult const* page) {
        checked.href.reset();
        if (page != nullptr) checked.href = refpage::nativePage(page->page.get()).getHref();
        checked.report = std::move(report);
    });
}

CheckedOne checkOne(std::string text) {
    CheckedOne checked;
    checkInto({refpage::PageInput::memory("checked.json", std::move(text))}, checked);
    return checked;
}

TEST_F(PageCheck, APageThatPassesIsShownToTheVisitorLoadedAndOneThatFailsIsNotAndIsComparedWithNothing) {
    CheckedOne const good = checkOne(page);
    ASSERT_TRUE(good.report.passed());
    EXPECT_EQ(good.href, u"demo/checked.html");
    CheckedOne const bad = checkOne(R"({"Href": 1})");
    EXPECT_FALSE(bad.report.passed());
    EXPECT_FALSE(bad.href);
    refpage::CheckReport const report = refpage::checkPage(R"({"Href": 1})", "bad.json");
    EXPECT_FALSE(report.passed());
    EXPECT_TRUE(report.comparisons.empty());
    EXPECT_EQ(report.valuesCompared, 0u);
}

TEST_F(PageCheck, PagesReadFromFilesOfEverySizeAreCheckedFromTheirOwnText) {
    // A text read from a file is trimmed to its size before the check reads it; the smallest
    // files, with the most room to trim, are where a check reading the untrimmed buffer would show.
    testvalues::ScratchFolder const folder;
    std::vector<refpage::PageInput> inputs;
    for (std::string const& text : {std::string("{}"), std::string(R"({"Href": "a.html"})"), std::string(R"({"Href": 1})"), std::string(page)})
        inputs.push_back(refpage::PageInput::file(folder.write(std::to_string(inputs.size()) + ".json", text)));
    std::vector<bool> passed(inputs.size());
    refpage::checkEach(inputs, 2, {}, false, [&](std::size_t i, refpage::CheckReport&& report, refpage::LoadResult const*) {
        passed[i] = report.passed();
    });
    EXPECT_EQ(passed, (std::vector<bool>{true, true, false, true}));
}

TEST_F(PageCheck, RunningOutOfMemoryAnywhereIsThePagesFailure) {
    refpage::ensureHostClasses();
    std::size_t failures = 0;
    for (std::size_t n = 1;; ++n) {
        std::vector<refpage::PageInput> const inputs{refpage::PageInput::memory("checked.json", page)};
        CheckedOne checked;
        checked.report.failures.reserve(1);
        allocationFailed = false;
        allocationsBeforeFailure = n;
        checkInto(inputs, checked);
        allocationsBeforeFailure = 0;
        refpage::CheckReport const& report = checked.report;
        if (!allocationFailed) {
            EXPECT_TRUE(report.passed());
            break;
        }
        // A failed allocation that something handled on its own may leave the page passing.
        if (report.passed()) continue;
        ++failures;
        ASSERT_EQ(report.failures.size(), 1u) << "at allocation " << n;
        EXPECT_NE(report.failures[0].message.find("out of memory"), std::string::npos)
            << "at allocation " << n << ": " << report.failures[0].describe();
    }
    EXPECT_GT(failures, 100u);
}

}  // namespace
