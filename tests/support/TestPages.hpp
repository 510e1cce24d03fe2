// Pages the tests load, every one written by the project: the hand-written pages
// of tests/data/good and generated pages, as files. For the tests that link the
// page library (loadNative); testPage alone needs only the test support.
#pragma once

#include <refpage/format/Loader.hpp>

#include <reference/property/RefItem.hpp>

#include <filesystem>
#include <optional>
#include <string>

namespace testvalues {

/// The file of test page `name`, readable until the process ends:
/// - "full", "unicode", "minimal": the hand-written tests/data/good/<name>.json;
/// - "drawn-<seed>", "full-<seed>", "largest-<seed>": a page of that generator shape, written once per
///   process into a temporary folder that is removed at exit.
/// Safe to call from several threads at once. Throws std::invalid_argument for any other name.
std::filesystem::path testPage(std::string const& name);

/// The folder of the shared corpus of real pages, when it is beside the checkout; empty otherwise.
std::optional<std::filesystem::path> corpusFolder();

/// Why a test that needs the corpus is skipped when it is absent.
inline constexpr char const* noCorpus = "the shared corpus (../shared/corpus/numpy) is not beside the checkout";

/// A native copy of test page `name` loaded through the host; an empty page if it does not load.
inline reference::property::RefItem loadNative(std::string const& name) {
    refpage::LoadResult const loaded = refpage::loadInput(refpage::PageInput::file(testPage(name)));
    return loaded.ok() ? refpage::nativePage(loaded.page.get()).copy() : reference::property::RefItem();
}

}  // namespace testvalues
