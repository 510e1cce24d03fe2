// Loading pages: read, parse, then build through the host. A page that fails is never
// half-built: either a whole host object or errors. Every command reads and loads its
// pages through the one path here, which also holds the rule that a page that cannot be
// read, or runs out of memory, fails alone and the run goes on.
#pragma once

#include <cstddef>
#include <optional>
#include <reference/property/HostArray.hpp>
#include <reference/property/RefItem.hpp>
#include <refpage/format/Inputs.hpp>
#include <refpage/format/PageError.hpp>
#include <refpage/support/FunctionRef.hpp>
#include <refpage/format/Parser.hpp>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace refpage {

struct LoadResult {
    reference::property::HostArrayPtr page;  ///< the RefItem host object; empty when errors is not
    PageErrors errors;
    PageErrors warnings;

    bool ok() const noexcept { return page != nullptr; }
};

/// One page to work on: an entry to read (a file, standard input or an entry a walk could
/// not use), or text already in memory.
struct PageInput {
    std::string source;               ///< the name diagnostics give the page
    std::optional<std::string> text;  ///< the page's text; absent: read `entry`
    PageEntry entry{};                ///< read when there is no text

    /// The page file at `path`.
    static PageInput file(std::filesystem::path const& path);
    /// `text`, named `source` in diagnostics.
    static PageInput memory(std::string source, std::string text);
    /// The page file named on a command line: a file, or "-" for standard input.
    static PageInput named(std::string const& name);
};

/// The inputs `names` give on a command line: files, "-", and folders walked (findPageEntries),
/// each read when worked on; sources as PageEntry::source() names them.
std::vector<PageInput> namedInputs(std::vector<std::string> const& names);

/// Registers the host classes and builds the property tables, once per process; every loader calls it.
void ensureHostClasses();

/// Parses and builds `text`. Never throws: running out of memory is an error saying so.
LoadResult loadPage(std::string_view text, std::string_view source, LoadOptions const& options = {});

/// Builds a parsed page, turning a build failure into an error of `parsed`'s source,
/// with its line and column in `text` (the text parsed) when given. Never throws.
LoadResult buildPage(ParsedPage const& parsed, std::string_view source, std::string_view text = {});

/// The native page a RefItem host object wraps; borrowed from `page`.
reference::property::RefItem const& nativePage(oxArray_tag const* page);

/// The text of one input as `withPageText` hands it over: `owned` holds `text` when it was read
/// (and may be released by the work as soon as it is no longer needed), null for text in memory.
using PageTextWork = FunctionRef<void(std::string_view text, std::string* owned)>;

/// Reads `input` and calls `work` with its text, on this thread. Returns the page's one
/// error when it could not be read, or when reading it or `work` ran out of memory
/// ("out of memory"); whatever `work` had done by then is the caller's to discard.
std::optional<PageError> withPageText(PageInput const& input, PageTextWork work);

/// Reads and loads `input`. Never throws.
LoadResult loadInput(PageInput const& input, LoadOptions const& options = {});

/// Called on the thread that loaded input `index`, once per input; the page is released on
/// that thread when it returns, unless it moved the result out.
using LoadVisitor = FunctionRef<void(std::size_t index, LoadResult&& result)>;

/// Loads every input on up to `jobs` threads (0: one per core), each page independently.
/// When `visit` runs out of memory, it is called once more for the same input with a result
/// holding only the error "out of memory", so that a visitor that resets its slot first
/// keeps the rule that such a page fails alone.
void loadEach(std::span<PageInput const> inputs, unsigned jobs, LoadOptions const& options, LoadVisitor visit);

}  // namespace refpage
