#include <new>
#include <reference/glue/Classes.hpp>
#include <reference/glue/Properties.hpp>
#include <refpage/format/Builder.hpp>
#include <refpage/format/Loader.hpp>
#include <refpage/support/TextPosition.hpp>
#include <refpage/format/Inputs.hpp>

namespace refpage {

void ensureHostClasses() {
    static bool const registered = (reference::glue::registerClasses(), reference::glue::allTables(), true);
    static_cast<void>(registered);
}

LoadResult buildPage(ParsedPage const& parsed, std::string_view source, std::string_view text) {
    LoadResult result;
    try {
        result.warnings = parsed.warnings;
        if (!parsed.ok()) {
            result.errors = parsed.errors;
            return result;
        }
        ensureHostClasses();
        try {
            result.page = buildRecord(parsed.root);
        } catch (PageBuildError const& e) {
            PageError error{std::string(source), e.path(), e.what()};
            if (!text.empty()) {
                TextPosition const position = positionOf(text, e.offset());
                error.line = position.line;
                error.column = position.column;
            }
            result.errors.push_back(std::move(error));
        }
    } catch (std::bad_alloc const&) {
        result = LoadResult{};
        result.errors.push_back(PageError{std::string(source), {}, "out of memory while loading the page"});
    }
    return result;
}

LoadResult loadPage(std::string_view text, std::string_view source, LoadOptions const& options) {
    ensureHostClasses();
    return buildPage(parsePage(text, source, options), source, text);
}

LoadResult loadPageFile(std::filesystem::path const& file, LoadOptions const& options) {
    std::string text;
    PageError error;
    if (!readTextFile(file, text, error)) {
        LoadResult result;
        result.errors.push_back(std::move(error));
        return result;
    }
    return loadPage(text, file.string(), options);
}

reference::property::RefItem const& nativePage(oxArray_tag const* page) {
    ocos::COSInterfacePtr const object = reference::glue::objectOf(page);
    auto const& table = reference::glue::tableOf<reference::property::RefItem>();
    // The array keeps its own reference to the object, so the record outlives `object`.
    return *static_cast<reference::property::RefItem const*>(reference::glue::recordOf(*object.get(), table));
}

}  // namespace refpage
