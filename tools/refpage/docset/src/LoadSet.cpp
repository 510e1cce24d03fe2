#include <optional>
#include <refpage/docset/LoadSet.hpp>

namespace refpage {

LoadedSet loadDocSet(std::span<PageInput const> inputs, unsigned jobs, LoadOptions const& options,
                     SummaryLinks links) {
    LoadedSet loaded;
    loaded.diagnostics.resize(inputs.size());
    std::vector<std::optional<PageSummary>> summaries(inputs.size());
    loadEach(inputs, jobs, options, [&](std::size_t i, LoadResult&& result) {
        summaries[i].reset();
        if (result.ok()) summaries[i] = summarize(inputs[i].source, nativePage(result.page.get()), links);
        loaded.diagnostics[i] = {std::move(result.errors), std::move(result.warnings)};
    });
    std::vector<PageSummary> pages;
    for (std::size_t i = 0; i < inputs.size(); ++i) {
        if (summaries[i]) {
            pages.push_back(std::move(*summaries[i]));
            loaded.inputOf.push_back(i);
        } else {
            ++loaded.failed;
        }
    }
    loaded.set = DocSet(std::move(pages));
    return loaded;
}

}  // namespace refpage
