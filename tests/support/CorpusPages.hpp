// Real pages of the shared corpus, loaded through the host. For the tests that
// link the page library.
#pragma once

#include <refpage/PageLoader.hpp>

#include <reference/property/RefItem.hpp>

#include <filesystem>
#include <string>

namespace testvalues {

/// The file of corpus page `name` (as "numpy.add").
inline std::filesystem::path corpusPage(std::string const& name) {
    return std::filesystem::path(REFPROP_CORPUS_DIR) / (name + ".json");
}

/// A native copy of a corpus page loaded through the host; an empty page if it does not load.
inline reference::property::RefItem loadNative(std::string const& name) {
    refpage::LoadResult const loaded = refpage::loadPageFile(corpusPage(name));
    return loaded.ok() ? refpage::nativePage(loaded.page.get()).copy() : reference::property::RefItem();
}

}  // namespace testvalues
