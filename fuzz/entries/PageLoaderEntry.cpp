// Fuzz entry: bytes as a page document. Whatever the bytes, loading reports
// errors or yields a page, never throws and never leaks host values; a page that
// loads reads back the same through the host and the native getters, loads
// again from what the host getters give, and equals its copy.
#include "FuzzCheck.hpp"
#include "FuzzEntries.hpp"

#include <refpage/PageCheck.hpp>
#include <refpage/PageLoader.hpp>
#include <refpage/PageParser.hpp>
#include <refpage/PageWriter.hpp>

#include <ovrin/testing.hpp>

#include <string>
#include <string_view>
#include <vector>

namespace refprop::fuzz {

namespace {

constexpr std::string_view source = "<fuzz>";

/// True when `actual` holds every key of `expected` with the same value.
bool sameJson(refpage::Json const& expected, refpage::Json const& actual) {
    std::string path;
    std::vector<std::string> differences;
    refpage::compareJson(expected, actual, path, differences);
    return differences.empty();
}

void loadAndCheck(std::string_view text) {
    refpage::ParsedPage const parsed = refpage::parsePage(text, source);
    if (!parsed.ok()) {
        check(!parsed.errors.empty(), "a page that does not parse says why");
        return;
    }
    refpage::LoadResult const loaded = refpage::buildPage(parsed, source);
    if (!loaded.ok()) {
        check(!loaded.errors.empty(), "a page that does not build says why");
        return;
    }
    refpage::Json const expected = refpage::documentToJson(parsed.root);
    refpage::Json const fromHost = refpage::pageToJson(loaded.page.get());
    reference::property::RefItem const& page = refpage::nativePage(loaded.page.get());
    check(sameJson(expected, fromHost), "the host getters give back what was loaded");
    check(sameJson(expected, refpage::nativePageToJson(page)), "the native getters give back what was loaded");
    check(page.copy() == page, "a copy of a loaded page equals it");

    refpage::LoadResult const reloaded = refpage::loadPage(refpage::jsonText(fromHost), source);
    check(reloaded.ok(), "what the host getters give loads again");
    check(refpage::nativePage(reloaded.page.get()) == page, "a page written out and loaded again is the same page");
}

}  // namespace

int fuzzPageLoader(std::uint8_t const* data, std::size_t size) {
    refpage::ensureHostClasses();
    std::size_t const arraysAtStart = ovrin::testing::liveArrays();
    std::size_t const objectsAtStart = ovrin::testing::liveObjects();
    loadAndCheck(std::string_view(reinterpret_cast<char const*>(data), size));
    check(ovrin::testing::liveArrays() == arraysAtStart, "loading leaves no host array behind");
    check(ovrin::testing::liveObjects() == objectsAtStart, "loading leaves no host object behind");
    return 0;
}

}  // namespace refprop::fuzz
