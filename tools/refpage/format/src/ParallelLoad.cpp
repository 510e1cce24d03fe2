#include <refpage/format/ParallelLoad.hpp>
#include <refpage/support/Parallel.hpp>

namespace refpage {

std::vector<PageInput> entryInputs(std::span<PageEntry const> entries) {
    std::vector<PageInput> inputs;
    inputs.reserve(entries.size());
    for (auto const& entry : entries) inputs.push_back({entry.source(), std::nullopt, entry});
    return inputs;
}

std::vector<LoadResult> loadPages(std::span<PageInput const> sources, unsigned jobs, LoadOptions const& options) {
    ensureHostClasses();
    std::vector<LoadResult> results(sources.size());
    forEachIndex(sources.size(), jobs, [&](std::size_t i) {
        PageInput const& input = sources[i];
        if (input.text) {
            results[i] = loadPage(*input.text, input.source, options);
            return;
        }
        std::string text;
        PageError error;
        if (readPageEntry(input.entry, text, error))
            results[i] = loadPage(text, input.source, options);
        else
            results[i].errors.push_back(std::move(error));
    });
    return results;
}

}  // namespace refpage
