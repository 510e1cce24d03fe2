// Pages loaded on several threads, with results identical to one thread: each
// page is independent, each result has its own slot, and the order is the input's.
#pragma once

#include <cstddef>
#include <optional>
#include <refpage/format/Loader.hpp>
#include <refpage/format/Inputs.hpp>
#include <span>
#include <string>
#include <vector>

namespace refpage {

/// One page to load: text already in memory, or an entry to read.
struct PageInput {
    std::string source;               ///< the name diagnostics give the page
    std::optional<std::string> text;  ///< the page's text; absent: read `entry`
    PageEntry entry{};                ///< the file, standard input or walk error to read when there is no text
};

/// One input per entry, read when loaded; sources as PageEntry::source() names them.
std::vector<PageInput> entryInputs(std::span<PageEntry const> entries);

/// Loads `sources` on `jobs` threads; results in the order of `sources`, identical to one thread.
/// An entry that cannot be read is a result with its one error. Host classes are registered
/// before any thread starts.
std::vector<LoadResult> loadPages(std::span<PageInput const> sources, unsigned jobs, LoadOptions const& options);

}  // namespace refpage
