// Checking that a page survives the host: loaded, read back two ways, copied,
// written out and read again, it always compares equal to its input.
#pragma once

#include <cstddef>
#include <refpage/format/PageError.hpp>
#include <refpage/format/Loader.hpp>
#include <refpage/format/Parser.hpp>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace refpage {

/// The comparisons a check makes, in order; a CheckReport lists those it made.
inline constexpr std::string_view readThroughHost = "read through the host getters";
inline constexpr std::string_view readThroughNative = "read through the native getters";
inline constexpr std::string_view copied = "copy() of the page";
inline constexpr std::string_view reloaded = "written out and read again";

struct CheckReport {
    PageErrors failures;
    PageErrors warnings;
    std::vector<std::string_view> comparisons;  ///< the comparisons made (all four once the page loads)
    std::size_t valuesCompared = 0;             ///< values compared with the input, both read-backs together

    bool passed() const noexcept { return failures.empty(); }
};

/// Loads `text` through the host and checks the round trips: every key of every record
/// read back through the host getters and through the native getters equals the input
/// (keys the input left out equal the record's initial value); the page's copy() equals
/// it; the page written out and read again writes exactly the same text (so it reads back
/// to the same values). The text is parsed once and the page built through the host once;
/// the written text is parsed but not built. Never throws: running out of memory is a failure saying
/// "out of memory" and at which stage.
CheckReport checkPage(std::string_view text, std::string_view source, LoadOptions const& options = {});

/// Called on the thread that checked input `index`, once per input; `page` is the loaded page
/// when the check passed and pages were asked for, else null, and is released when it returns.
using CheckVisitor = FunctionRef<void(std::size_t index, CheckReport&& report, LoadResult const* page)>;

/// Checks every input on up to `jobs` threads (0: one per core), each page independently:
/// read (a page that cannot be read fails with the reason), checked as checkPage does, its
/// text released as soon as it is no longer needed. With `withPages`, `visit` also sees each
/// page that passed; otherwise a page is released before its written text is read again.
/// When `visit` runs out of memory it is called once more for the same input with only the
/// failure "out of memory".
void checkEach(std::span<PageInput const> inputs, unsigned jobs, LoadOptions const& options, bool withPages,
               CheckVisitor visit);

}  // namespace refpage
