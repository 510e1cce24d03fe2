// Host values as the host would hand them to property setters.
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
HostArrayPtr adopt(oxArray_tag* array);

/// A host enumeration object of class `qualifiedName` made from `numbers` (any count).
HostArrayPtr enumObject(std::string const& qualifiedName, std::vector<std::uint32_t> const& numbers);

/// A 1-by-N host string array.
HostArrayPtr stringArray(std::vector<std::u16string> const& texts);

/// A 1-by-N host object array of class `qualifiedName`, each element wrapping a heap copy of a record.
template <class T>
HostArrayPtr objectArray(std::string const& qualifiedName, std::vector<T> const& records) {
    ocos::ClassIdentity const identity = ocos::internal::makeInterned(qualifiedName);
    matrix::unique_array array = matrix::from_ovrin(omCreateOCOSMatrix(1, records.size(), identity));
    for (std::size_t i = 0; i < records.size(); ++i) {
        auto heap = std::make_unique<T>(records[i].copy());
        ocos::COSInterfacePtr object = omWrapData(heap.get(), ocos::COSClass::getClass(identity));
        heap.release();
        omSetArrayElement(array.get(), i, object);
    }
    return HostArrayPtr(array.release(), false);
}

}  // namespace testvalues
