// Host values as the host hands them to property setters, made with the host's
// own operations.
#pragma once

#include <reference/property/HostArray.hpp>

#include <ovrin/ocos.hpp>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace refprop::fuzz {

using reference::property::HostArrayPtr;

/// The qualified host class name of `T`.
template <class T>
std::string hostClassName() {
    return std::string(T::getOCOSNamespaceName()) + "." + T::getOCOSClassName();
}

/// A host enumeration object of class `qualifiedName` made from `numbers` (any count).
HostArrayPtr enumObject(std::string const& qualifiedName, std::vector<std::uint32_t> const& numbers);

/// A 1-by-N host string array.
HostArrayPtr stringArray(std::vector<std::u16string> const& texts);

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
    return HostArrayPtr(array.release(), false);
}

/// A 1-by-N host object array of `T`'s own class.
template <class T>
HostArrayPtr objectArray(std::vector<T> const& records) {
    return objectArray(hostClassName<T>(), records);
}

}  // namespace refprop::fuzz
