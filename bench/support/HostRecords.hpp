// Host values made the way the host makes them: object arrays wrapping heap
// copies of records, and records filled through their host setters.
#pragma once

#include <reference/property/Example.hpp>
#include <reference/property/Input.hpp>
#include <reference/property/HostArray.hpp>

#include <ovrin/ocos.hpp>

#include <memory>
#include <string>
#include <vector>

namespace bench {

using reference::property::HostArrayPtr;

/// The qualified host class name of a record class.
template <class Record>
std::string qualifiedName() {
    return std::string(Record::getOCOSNamespaceName()) + "." + Record::getOCOSClassName();
}

/// A new 1-by-N host object array of `Record`'s class, each element wrapping a heap copy of a record.
template <class Record>
HostArrayPtr hostObjectArray(std::vector<Record> const& records) {
    ocos::ClassIdentity const identity = ocos::internal::makeInterned(qualifiedName<Record>());
    ocos::COSClass* const cls = ocos::COSClass::getClass(identity);
    matrix::unique_array array = matrix::from_ovrin(omCreateOCOSMatrix(1, records.size(), identity));
    for (std::size_t i = 0; i < records.size(); ++i) {
        auto heap = std::make_unique<Record>(records[i].copy());
        ocos::COSInterfacePtr const object = omWrapData(heap.get(), cls);
        heap.release();
        omSetArrayElement(array.get(), i, object);
    }
    return HostArrayPtr(array.release(), false);
}

/// `count` distinct examples with texts of corpus-typical length (none fits a short-string buffer).
std::vector<reference::property::Example> syntheticExamples(std::size_t count);

/// `count` distinct inputs, each with four texts, two values and a syntax type, as a corpus input has.
std::vector<reference::property::Input> syntheticInputs(std::size_t count);

}  // namespace bench
