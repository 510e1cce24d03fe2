// Pages loaded on several threads, with results identical to one thread: each
// page is independent, each result has its own slot, and the order is the input's.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <refpage/DocSet.hpp>
#include <refpage/PageLoader.hpp>
#include <refpage/PageSource.hpp>
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

/// The number of threads `jobs` asks for: itself when nonzero, else the number of cores (at least 1).
unsigned threadCount(unsigned jobs) noexcept;

/// Calls `work(i)` for every i in [0, count) on up to `jobs` threads (0: one per core).
/// Each index is taken once; `work` must only touch what index i owns. Returns when all are
/// done; the first exception a call throws is rethrown here after the others finish.
void forEachIndex(std::size_t count, unsigned jobs, std::function<void(std::size_t)> const& work);

/// Loads `sources` on `jobs` threads; results in the order of `sources`, identical to one thread.
/// An entry that cannot be read is a result with its one error. Host classes are registered
/// before any thread starts.
std::vector<LoadResult> loadPages(std::span<PageInput const> sources, unsigned jobs, LoadOptions const& options);

/// The pages that loaded, in order, for a DocSet; results that failed are skipped.
std::vector<DocSetPage> docSetPages(std::span<PageInput const> sources, std::span<LoadResult const> results);

}  // namespace refpage
