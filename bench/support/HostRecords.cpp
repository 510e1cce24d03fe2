#include "support/HostRecords.hpp"

#include <reference/glue/Enumerations.hpp>
#include <reference/property/SyntaxType.hpp>

#include <span>

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

std::vector<reference::property::Input> syntheticInputs(std::size_t count) {
    using reference::property::SyntaxType;
    std::uint32_t const usage = SyntaxType::Usage;
    HostArrayPtr const syntaxType =
        reference::glue::constructEnumeration(reference::glue::enumerationInfo<SyntaxType>(), std::span(&usage, 1));
    std::vector<reference::property::Input> inputs(count);
    for (std::size_t i = 0; i < count; ++i) {
        std::string const number = std::to_string(i);
        std::u16string const name = widen("argument_" + number);
        std::u16string const purpose = widen("Input array " + number + ", broadcast against the others.");
        std::u16string const href = widen("#numpy.function-argument_" + number);
        std::u16string const defaultValue = widen("None");
        matrix::unique_array values = matrix::from_ovrin(oxCreateStringArray(1, 2));
        oxSetStringElement(values.get(), 0, widen("array_like"));
        oxSetStringElement(values.get(), 1, widen("scalar " + number));
        inputs[i].setNameProperty(&name);
        inputs[i].setPurposeProperty(&purpose);
        inputs[i].setHrefProperty(&href);
        inputs[i].setDefaultValueProperty(&defaultValue);
        inputs[i].setValuesProperty(values.get());
        inputs[i].setSyntaxTypeProperty(syntaxType.get());
        inputs[i].setIsNameValuePairProperty(i % 2 == 1);
    }
    return inputs;
}

}  // namespace bench
