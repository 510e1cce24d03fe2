// String arrays: the host form of a list of texts.
#include "HostInternal.hpp"

namespace {

oxArray_tag const& requireStrings(oxArray_tag const* array, char const* operation) {
    oxArray_tag const& a = ovrin::host::require(array, operation);
    if (a.classId != oxSTRING_CLASS)
        throw ovrin::HostError(std::string(operation) + ": expected a string array, found " + ovrin::host::describe(a));
    return a;
}

}  // namespace

oxArray_tag* oxCreateStringArray(std::size_t rows, std::size_t columns) {
    ovrin::host::enter("oxCreateStringArray");
    std::size_t const count = ovrin::host::elementCount(rows, columns);
    return oxArray_tag::create(oxSTRING_CLASS, rows, columns, oxArray_tag::Payload::Strings, count);
}

std::u16string const& oxGetStringElement(oxArray_tag const* array, std::size_t index) {
    ovrin::host::enter("oxGetStringElement");
    oxArray_tag const& a = requireStrings(array, "oxGetStringElement");
    ovrin::host::requireIndex(a, index, "oxGetStringElement");
    return a.strings()[index];
}

void oxSetStringElement(oxArray_tag* array, std::size_t index, std::u16string text) {
    ovrin::host::enter("oxSetStringElement");
    requireStrings(array, "oxSetStringElement");
    ovrin::host::requireIndex(*array, index, "oxSetStringElement");
    array->strings()[index] = std::move(text);
}
