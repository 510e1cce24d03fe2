// The reference pages the benchmarks run on, read and loaded once, before any
// timed loop: the shared corpus of real pages, or a generated doc set of the
// same size when the corpus is not beside the checkout.
#pragma once

#include <reference/property/RefItem.hpp>

#include <string>
#include <vector>

namespace bench {

struct CorpusPage {
    std::string path;                    ///< the JSON file the page came from
    std::string json;                    ///< the file's whole text
    reference::property::RefItem page;   ///< a copy of the page as loaded through its host property setters
};

/// Every page of the corpus directory, in file-name order, or the generated stand-in when the
/// directory holds no page; loaded on first use. Registers the host classes first.
std::vector<CorpusPage> const& corpus();

/// Deep copies of the corpus pages, made by copy(), for comparisons between distinct objects.
std::vector<reference::property::RefItem> corpusCopies();

}  // namespace bench
