#include <fmt/format.h>

#include <refpage/PageCheck.hpp>
#include <refpage/PageLoader.hpp>
#include <refpage/PageWriter.hpp>

#include "JsonPath.hpp"

namespace refpage {

namespace {

std::string shortText(Json const& json) {
    std::string text = json.dump(-1, ' ', false, Json::error_handler_t::replace);
    if (text.size() > 60) text = text.substr(0, 57) + "...";
    return text;
}

}  // namespace

void compareJson(Json const& expected, Json const& actual, std::string& path, std::vector<std::string>& differences) {
    if (expected.is_object() && actual.is_object()) {
        for (auto const& [key, value] : expected.items()) {
            PathSegment const segment(path, key);
            auto const found = actual.find(key);
            if (found == actual.end())
                differences.push_back(fmt::format("{}: missing", path));
            else
                compareJson(value, *found, path, differences);
        }
        return;
    }
    if (expected.is_array() && actual.is_array()) {
        if (expected.size() != actual.size()) {
            differences.push_back(
                fmt::format("{}: {} elements expected, found {}", path, expected.size(), actual.size()));
            return;
        }
        for (std::size_t i = 0; i < expected.size(); ++i) {
            PathSegment const segment(path, i);
            compareJson(expected[i], actual[i], path, differences);
        }
        return;
    }
    if (expected != actual)
        differences.push_back(fmt::format("{}: expected {}, found {}", path, shortText(expected), shortText(actual)));
}

namespace {

class PageChecker {
public:
    PageChecker(std::string_view source, CheckReport& report) : source_(source), report_(report) {}

    void fail(std::string path, std::string message) {
        report_.failures.push_back(PageError{std::string(source_), std::move(path), std::move(message)});
    }

    void compare(std::string_view what, Json const& expected, Json const& actual) {
        std::vector<std::string> differences;
        std::string path;
        compareJson(expected, actual, path, differences);
        for (auto const& difference : differences) fail({}, fmt::format("{}: {}", what, difference));
    }

    void check(ParsedPage const& parsed) {
        LoadResult const loaded = buildPage(parsed, source_);
        report_.failures.insert(report_.failures.end(), loaded.errors.begin(), loaded.errors.end());
        if (!loaded.ok()) return;

        Json const expected = documentToJson(parsed.root);
        Json const fromHost = pageToJson(loaded.page.get());
        compare("read through the host getters", expected, fromHost);
        auto const& page = nativePage(loaded.page.get());
        compare("read through the native getters", expected, nativePageToJson(page));

        LoadResult const reloaded = loadPage(jsonText(fromHost), source_);
        if (!reloaded.ok()) {
            for (auto const& error : reloaded.errors)
                fail(error.path, "written out and loaded again: " + error.message);
        } else if (!(nativePage(reloaded.page.get()) == page)) {
            fail({}, "written out and loaded again, the page differs");
        }
        if (!(page.copy() == page)) fail({}, "a copy of the page differs from it");
    }

private:
    std::string_view source_;
    CheckReport& report_;
};

}  // namespace

CheckReport checkPage(std::string_view text, std::string_view source, LoadOptions const& options) {
    CheckReport report;
    ParsedPage const parsed = parsePage(text, source, options);
    report.warnings = parsed.warnings;
    if (!parsed.ok()) {
        report.failures = parsed.errors;
        return report;
    }
    try {
        PageChecker(source, report).check(parsed);
    } catch (std::exception const& e) {
        report.failures.push_back(PageError{std::string(source), {}, fmt::format("check failed: {}", e.what())});
    }
    return report;
}

}  // namespace refpage
