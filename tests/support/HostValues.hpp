// Host values as the host hands them to property setters, and reads of the host
// values that property getters return; made and read with the host's own
// operations only. Shared by the tests and the fuzz entries.
#pragma once

#include <reference/property/HostArray.hpp>

#include <ovrin/ocos.hpp>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace testvalues {

using reference::property::HostArrayPtr;

/// Takes over the caller's single reference to a new array.
inline HostArrayPtr adopt(oxArray_tag* array) { return HostArrayPtr(array, false); }

/// The qualified host class name of `T`.
template <class T>
std::string hostClassName() {
    return std::string(T::getOCOSNamespaceName()) + "." + T::getOCOSClassName();
}

/// A 1-by-N unsigned 32-bit numeric array (not an enumeration object).
inline HostArrayPtr numericArray(std::vector<std::uint32_t> const& numbers) {
    HostArrayPtr array = adopt(matrix::detail::do_create_uninitnumeric(1, numbers.size(), oxUINT32_CLASS, false));
    auto* const data = static_cast<std::uint32_t*>(oxGetData(array.get()));
    for (std::size_t i = 0; i < numbers.size(); ++i) data[i] = numbers[i];
    return array;
}

/// A host enumeration object of class `qualifiedName` made from `numbers` (any count).
inline HostArrayPtr enumObject(std::string const& qualifiedName, std::vector<std::uint32_t> const& numbers) {
    HostArrayPtr const numeric = numericArray(numbers);
    oxArray_tag const* const args[] = {numeric.get()};
    return adopt(omConstructObjectWithClient(ocos::internal::makeInterned(qualifiedName), 1, args,
                                             COSGetPublicClient()));
}

/// A host enumeration object of `Enum`'s class standing on one number.
template <class Enum>
HostArrayPtr enumValue(std::uint32_t number) {
    return enumObject(hostClassName<Enum>(), {number});
}

/// A 1-by-N host string array.
inline HostArrayPtr stringArray(std::vector<std::u16string> const& texts) {
    matrix::unique_array array = matrix::from_ovrin(oxCreateStringArray(1, texts.size()));
    for (std::size_t i = 0; i < texts.size(); ++i) oxSetStringElement(array.get(), i, texts[i]);
    return adopt(array.release());
}

/// A 1-by-N host object array of class `qualifiedName`, each element wrapping a heap copy of a record.
/// The host checks that each record's native type is the class's.
template <class T>
HostArrayPtr objectArray(std::string const& qualifiedName, std::vector<T> const& records) {
    ocos::ClassIdentity const identity = ocos::internal::makeInterned(qualifiedName);
    matrix::unique_array array = matrix::from_ovrin(omCreateOCOSMatrix(1, records.size(), identity));
    for (std::size_t i = 0; i < records.size(); ++i) {
        auto heap = std::make_unique<T>(records[i].copy());
        ocos::COSInterfacePtr const object = omWrapData(heap.get(), ocos::COSClass::getClass(identity));
        static_cast<void>(heap.release());  // adopted by the host object
        omSetArrayElement(array.get(), i, object);
    }
    return adopt(array.release());
}

/// A 1-by-N host object array of `T`'s own class.
template <class T>
HostArrayPtr objectArray(std::vector<T> const& records) {
    return objectArray(hostClassName<T>(), records);
}

/// The texts of a host string array.
inline std::vector<std::u16string> hostTexts(oxArray_tag const* array) {
    std::vector<std::u16string> texts;
    for (std::size_t i = 0; i < oxGetNumberOfElements(array); ++i) texts.push_back(oxGetStringElement(array, i));
    return texts;
}

/// The first number a host enumeration value stands on.
inline std::uint32_t hostNumber(oxArray_tag const* array) {
    return *static_cast<std::uint32_t const*>(oxGetData(omGetUnderlyingArray(array)));
}

}  // namespace testvalues
