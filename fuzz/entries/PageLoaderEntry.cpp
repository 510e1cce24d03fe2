// Fuzz entry: bytes as a page document. Whatever the bytes, loading reports
// errors, each with its line and column, or yields a page, never throws and
// never leaks host values; a page that loads passes every round trip of the
// page check (read back the same through the host and the native getters,
// written out and read again, copied).
#include "FuzzCheck.hpp"
#include "FuzzEntries.hpp"

#include <refpage/format/Check.hpp>
#include <refpage/format/Loader.hpp>

#include <ovrin/testing.hpp>

#include <string_view>

namespace refprop::fuzz {

namespace {

constexpr std::string_view source = "<fuzz>";

void loadAndCheck(std::string_view text) {
    refpage::LoadResult const loaded = refpage::loadPage(text, source);
    for (auto const& error : loaded.errors) check(error.line != 0 && error.column != 0, "every error has its position");
    if (!loaded.ok()) {
        check(!loaded.errors.empty(), "a page that does not load says why");
        return;
    }
    check(refpage::checkPage(text, source).passed(), "a page that loads passes every round trip");
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
