#include <new>
#include <reference/property/RefItem.hpp>
#include <refpage/format/Parser.hpp>
#include <refpage/support/TextPosition.hpp>
#include <string>

#include "PageReader.hpp"

namespace refpage {

ParsedPage parsePage(std::string_view text, std::string_view source, LoadOptions const& options) {
    ParsedPage page;
    page.root.table = &reference::glue::tableOf<reference::property::RefItem>();
    try {
        ReadFindings findings;
        try {
            readPageText(text, source, page.root, findings);
        } catch (std::bad_alloc const&) {
            // What was read goes first, so that the one error saying so can be made.
            page.root.assignments = {};
            findings.errors.clear();
            findings.warnings.clear();
            findings.errors.add(source, std::move(findings.pointer), "out of memory while reading the page", 0);
        }
        Locator locator(text);
        page.errors = findings.errors.resolve(source, locator);
        page.warnings = findings.warnings.resolve(source, locator);
    } catch (std::bad_alloc const&) {
        page = ParsedPage{};
        page.root.table = &reference::glue::tableOf<reference::property::RefItem>();
        page.errors.push_back(PageError{std::string(source), {}, "out of memory while reading the page"});
    }
    if (!page.errors.empty()) page.root.assignments = {};
    if (options.strict) {
        for (auto& warning : page.warnings) {
            warning.message += " (strict mode)";
            page.errors.push_back(std::move(warning));
        }
        page.warnings.clear();
    }
    return page;
}

}  // namespace refpage
