// Deterministic generator of pages in the page format, alone or as a doc set
// whose pages link to each other. The same seed and options give the same
// bytes on every run and every machine: only integer arithmetic draws values.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace pagegen {

/// How a single page is drawn.
enum class Shape {
    Drawn,    ///< sizes drawn to match real reference pages: about 42 texts and 3.4 KiB of UTF-16 on average
    Full,     ///< every key of every record present, every list non-empty, every text non-empty
    Largest,  ///< every list long and every text long: about ten times an average page
};

/// What a doc set holds beside ordinary pages. Shares are fractions in [0, 1], clamped.
struct DocSetOptions {
    std::uint64_t seed = 1;       ///< equal seeds and options give byte-identical sets
    std::size_t pages = 100;      ///< pages in the set
    std::string package = "pkg";  ///< first component of every entity name and the pages' PackageName
    double brokenLinks = 0.0;     ///< share of see-also Urls and input Hrefs that name no page of the set
    double duplicateNames = 0.0;  ///< share of pages whose entity names repeat an earlier page's
    double duplicateHrefs = 0.0;  ///< share of pages whose Href repeats an earlier page's
    double deprecated = 0.0;      ///< share of pages whose DeprecationStatus is not "current"
    double nonAscii = 0.03;       ///< share of texts holding a CJK word, a combining mark or an emoji
};

/// One page of a doc set.
struct GeneratedPage {
    std::string fileName;  ///< unique in its set: "<entity name>.json", or "<entity name>_<n>.json" for a repeat
    std::string href;      ///< the page's Href: "reference/generated/<entity name>.html"
    std::string name;      ///< the first entity's name, as "pkg.sub.sort"
    std::string json;      ///< the page's JSON text (UTF-8, one-space indentation, ends with a newline)
};

/// One page on its own, its links pointing at pages of an imagined package.
std::string generatePage(std::uint64_t seed, Shape shape = Shape::Drawn);

/// A doc set of `options.pages` pages; every page is Shape::Drawn except that the first two pages of a
/// set of at least 20 are one Shape::Full and one Shape::Largest page.
std::vector<GeneratedPage> generateDocSet(DocSetOptions const& options);

/// Writes every page to `folder/<fileName>`, creating the folder; throws std::filesystem::filesystem_error
/// or std::runtime_error when a file cannot be written.
void writeDocSet(std::filesystem::path const& folder, std::vector<GeneratedPage> const& pages);

}  // namespace pagegen
