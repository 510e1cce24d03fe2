#include "HostArrays.hpp"

namespace refprop::fuzz {

HostArrayPtr enumObject(std::string const& qualifiedName, std::vector<std::uint32_t> const& numbers) {
    HostArrayPtr const numeric(matrix::detail::do_create_uninitnumeric(1, numbers.size(), oxUINT32_CLASS, false),
                               false);
    auto* const data = static_cast<std::uint32_t*>(oxGetData(numeric.get()));
    for (std::size_t i = 0; i < numbers.size(); ++i) data[i] = numbers[i];
    oxArray_tag const* const args[] = {numeric.get()};
    return HostArrayPtr(
        omConstructObjectWithClient(ocos::internal::makeInterned(qualifiedName), 1, args, COSGetPublicClient()), false);
}

HostArrayPtr stringArray(std::vector<std::u16string> const& texts) {
    matrix::unique_array array = matrix::from_ovrin(oxCreateStringArray(1, texts.size()));
    for (std::size_t i = 0; i < texts.size(); ++i) oxSetStringElement(array.get(), i, texts[i]);
    return HostArrayPtr(array.release(), false);
}

}  // namespace refprop::fuzz
