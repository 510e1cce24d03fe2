// A doc set loaded from its inputs: every page loaded on the tool's threads, summarized
// and released on the thread that loaded it, so that memory holds summaries, not pages.
#pragma once

#include <cstddef>
#include <refpage/docset/DocSet.hpp>
#include <refpage/format/Loader.hpp>
#include <span>
#include <vector>

namespace refpage {

/// What loading said about one input.
struct LoadDiagnostics {
    PageErrors errors;    ///< why the page did not load; empty when it did
    PageErrors warnings;
};

struct LoadedSet {
    std::vector<LoadDiagnostics> diagnostics;  ///< one per input, in input order
    std::vector<std::size_t> inputOf;          ///< for each page of `set`, the index of its input
    DocSet set{{}};                            ///< the pages that loaded, in input order
    std::size_t failed = 0;                    ///< inputs that did not load
};

/// Loads `inputs` on up to `jobs` threads (0: one per core), summaries keeping `links` or not.
/// The set and the diagnostics are identical on any number of threads.
LoadedSet loadDocSet(std::span<PageInput const> inputs, unsigned jobs, LoadOptions const& options,
                     SummaryLinks links = SummaryLinks::Kept);

}  // namespace refpage
