// Loads the corpus pages with the page format library: parsed, then built
// through the host's property setters, as refpage does. Without the shared
// corpus, a generated doc set of the same size stands in for it.
#include "support/Corpus.hpp"

#include <pagegen/PageGen.hpp>
#include <refpage/format/Loader.hpp>

#include <algorithm>
#include <filesystem>
#include <stdexcept>

namespace bench {
namespace {

/// Pages of the stand-in doc set: as many as the shared corpus has, drawn from a fixed seed.
constexpr std::size_t generatedPages = 961;

/// The generated stand-in for the corpus, named "generated/<file>".
std::vector<CorpusPage> generatedCorpus() {
    std::vector<CorpusPage> pages;
    for (pagegen::GeneratedPage& generated : pagegen::generateDocSet({.seed = 1, .pages = generatedPages}))
        pages.push_back({"generated/" + generated.fileName, std::move(generated.json), {}});
    std::sort(pages.begin(), pages.end(), [](CorpusPage const& a, CorpusPage const& b) { return a.path < b.path; });
    return pages;
}

std::vector<CorpusPage> loadCorpus() {
    refpage::ensureHostClasses();
    std::vector<std::filesystem::path> paths;
    std::error_code error;
    for (auto const& file : std::filesystem::directory_iterator(REFPROP_CORPUS_DIR, error)) {
        if (file.path().extension() == ".json") {
            paths.push_back(file.path());
        }
    }
    std::sort(paths.begin(), paths.end());
    std::vector<CorpusPage> pages;
    if (paths.empty()) {
        pages = generatedCorpus();
    } else {
        pages.reserve(paths.size());
        for (auto const& path : paths) {
            CorpusPage entry{path.string(), {}, {}};
            refpage::PageError readError;
            if (!refpage::readTextFile(path, entry.json, readError)) {
                throw std::runtime_error("cannot read " + entry.path);
            }
            pages.push_back(std::move(entry));
        }
    }
    for (CorpusPage& entry : pages) {
        refpage::LoadResult const loaded = refpage::loadPage(entry.json, entry.path);
        if (!loaded.ok()) {
            throw std::runtime_error("cannot load " + entry.path);
        }
        entry.page = refpage::nativePage(loaded.page.get()).copy();
    }
    return pages;
}

}  // namespace

std::vector<CorpusPage> const& corpus() {
    static std::vector<CorpusPage> const pages = loadCorpus();
    return pages;
}

std::vector<reference::property::RefItem> corpusCopies() {
    std::vector<reference::property::RefItem> copies;
    copies.reserve(corpus().size());
    for (auto const& entry : corpus()) {
        copies.push_back(entry.page.copy());
    }
    return copies;
}

}  // namespace bench
