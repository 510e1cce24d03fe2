#include <new>
#include <reference/glue/Classes.hpp>
#include <reference/glue/Properties.hpp>
#include <refpage/format/Builder.hpp>
#include <refpage/format/Loader.hpp>
#include <refpage/support/Parallel.hpp>
#include <refpage/support/TextPosition.hpp>

namespace refpage {

PageInput PageInput::file(std::filesystem::path const& path) {
    PageEntry entry{path.string(), std::nullopt};
    return {entry.source(), std::nullopt, std::move(entry)};
}

PageInput PageInput::memory(std::string source, std::string text) {
    return {std::move(source), std::move(text), {}};
}

PageInput PageInput::named(std::string const& name) {
    PageEntry entry = name == stdinPath ? PageEntry{} : PageEntry{name, std::nullopt};
    return {entry.source(), std::nullopt, std::move(entry)};
}

std::vector<PageInput> namedInputs(std::vector<std::string> const& names) {
    std::vector<PageEntry> entries = findPageEntries(names);
    std::vector<PageInput> inputs;
    inputs.reserve(entries.size());
    for (auto& entry : entries) {
        std::string source = entry.source();
        inputs.push_back({std::move(source), std::nullopt, std::move(entry)});
    }
    return inputs;
}

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

reference::property::RefItem const& nativePage(oxArray_tag const* page) {
    ocos::COSInterfacePtr const object = reference::glue::objectOf(page);
    auto const& table = reference::glue::tableOf<reference::property::RefItem>();
    // The array keeps its own reference to the object, so the record outlives `object`.
    return *static_cast<reference::property::RefItem const*>(reference::glue::recordOf(*object.get(), table));
}

std::optional<PageError> withPageText(PageInput const& input, PageTextWork work) {
    try {
        if (input.text) {
            work(*input.text, nullptr);
            return std::nullopt;
        }
        std::string text;
        PageError error;
        if (!readPageEntry(input.entry, text, error)) return error;
        work(text, &text);
        return std::nullopt;
    } catch (std::bad_alloc const&) {
        return PageError{input.source, {}, "out of memory"};
    }
}

namespace {

LoadResult failed(PageError error) {
    LoadResult result;
    result.errors.push_back(std::move(error));
    return result;
}

}  // namespace

LoadResult loadInput(PageInput const& input, LoadOptions const& options) {
    LoadResult result;
    auto const load = [&](std::string_view text, std::string*) { result = loadPage(text, input.source, options); };
    if (auto error = withPageText(input, load))
        return failed(std::move(*error));
    return result;
}

void loadEach(std::span<PageInput const> inputs, unsigned jobs, LoadOptions const& options, LoadVisitor visit) {
    ensureHostClasses();
    forEachIndex(inputs.size(), jobs, [&](std::size_t i) {
        PageInput const& input = inputs[i];
        auto error = withPageText(input, [&](std::string_view text, std::string* owned) {
            LoadResult result = loadPage(text, input.source, options);
            if (owned != nullptr) std::string().swap(*owned);  // the text goes before the visitor works on the page
            visit(i, std::move(result));
        });
        if (error) visit(i, failed(std::move(*error)));
    });
}

}  // namespace refpage
