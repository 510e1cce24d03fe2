// Pages loaded on several threads, with results identical to one thread: each
// page is independent, each result has its own slot, and the order is the input's.
#pragma once

#include <cstddef>
#include <filesystem>
#include <functional>
#include <optional>
#include <refpage/DocSet.hpp>
#include <refpage/PageLoader.hpp>
#include <span>
#include <string>
#include <vector>

namespace refpage {

/// One page to load: a file to read, or text already in memory.
struct PageInput {
    std::string source;               ///< the file to read, or the name diagnostics give the text
    std::optional<std::string> text;  ///< the page's text; absent: read `source`
};

/// One input per file, read when loaded.
std::vector<PageInput> fileInputs(std::span<std::filesystem::path const> files);

/// The number of threads `jobs` asks for: itself when nonzero, else the number of cores (at least 1).
unsigned threadCount(unsigned jobs) noexcept;

/// Calls `work(i)` for every i in [0, count) on up to `jobs` threads (0: one per core).
/// Each index is taken once; `work` must only touch what index i owns. Returns when all are
/// done; the first exception a call throws is rethrown here after the others finish.
void forEachIndex(std::size_t count, unsigned jobs, std::function<void(std::size_t)> const& work);

/// Loads `sources` on `jobs` threads; results in the order of `sources`, identical to one thread.
/// Host classes are registered before any thread starts.
std::vector<LoadResult> loadPages(std::span<PageInput const> sources, unsigned jobs, LoadOptions const& options);

/// The pages that loaded, in order, for a DocSet; results that failed are skipped.
std::vector<DocSetPage> docSetPages(std::span<PageInput const> sources, std::span<LoadResult const> results);

}  // namespace refpage
