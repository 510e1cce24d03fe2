#include "support/HostRecords.hpp"

namespace bench {

namespace {

std::u16string widen(std::string const& text) { return std::u16string(text.begin(), text.end()); }

}  // namespace

std::vector<reference::property::Example> syntheticExamples(std::size_t count) {
    std::vector<reference::property::Example> examples(count);
    for (std::size_t i = 0; i < count; ++i) {
        std::string const number = std::to_string(i);
        std::u16string const url = widen("reference/generated/numpy.example_" + number + ".html#examples");
        std::u16string const command = widen("openExample('numpy/example_" + number + "')");
        std::u16string const title = widen("Example " + number + " of a reference page");
        examples[i].setUrlProperty(&url);
        examples[i].setOpenCommandProperty(&command);
        examples[i].setTitleProperty(&title);
    }
    return examples;
}

}  // namespace bench
