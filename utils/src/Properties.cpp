#include <reference/utils/Properties.hpp>

#include <ovrin/error.hpp>

namespace reference::utils {
namespace {

/// A new 1-by-N host string array holding `texts`, with its single reference in the result.
boost::intrusive_ptr<oxArray_tag const> buildStringArray(std::vector<std::u16string> const& texts) {
    matrix::unique_array array = matrix::from_ovrin(oxCreateStringArray(1, texts.size()));
    for (std::size_t i = 0; i < texts.size(); ++i) oxSetStringElement(array.get(), i, texts[i]);
    oxSetArrayScope(array.get(), cachedArrayScope);
    return boost::intrusive_ptr<oxArray_tag const>(array.release(), false);
}

}  // namespace

void setStringProperty(std::u16string& member, std::u16string const* value) {
    if (value != nullptr) member = *value;
}

void setStringVectorAndCache(oxArray_tag const* value, boost::intrusive_ptr<oxArray_tag const>& cache,
                             std::vector<std::u16string>& field) {
    if (value == nullptr) return;
    if (oxGetClassID(value) != oxSTRING_CLASS)
        throw ovrin::HostError("setStringVectorAndCache: expected a string array, found an array of class id " +
                               std::to_string(static_cast<int>(oxGetClassID(value))));
    std::size_t const count = oxGetNumberOfElements(value);
    std::vector<std::u16string> texts;
    texts.reserve(count);
    for (std::size_t i = 0; i < count; ++i) texts.push_back(oxGetStringElement(value, i));
    field = std::move(texts);
    cache = buildStringArray(field);
}

oxArray_tag const* accessStringVectorCache(boost::intrusive_ptr<oxArray_tag const>& cache,
                                           std::vector<std::u16string> const& field) {
    if (!cache) cache = buildStringArray(field);
    return cache.get();
}

boost::intrusive_ptr<oxArray_tag const> copyOxArrayToSharedOxArrayPtr(oxArray_tag const* array) {
    return boost::intrusive_ptr<oxArray_tag const>(array);
}

}  // namespace reference::utils
