// The one getter/setter pair behind every enumeration-valued property: the record
// keeps the number, the host sees an object of the enumeration's host class.
#pragma once

#include "bridge/ClassIdentity.hpp"

#include <reference/property/HostArray.hpp>
#include <reference/utils/HostObjects.hpp>
#include <reference/utils/Properties.hpp>

#include <cstdint>
#include <span>

namespace reference::property::bridge {

/// Setter core: the number of the one element under a non-null `value`, as it is (no range
/// check). Throws RequireScalar unless `value` stands on exactly one element.
std::uint32_t readScalarNumber(oxArray_tag const* value);

/// The getter of an enumeration property of `Enum`. Returns the cached array when there is one
/// (the number is not looked at); otherwise constructs a host object of `Enum`'s class from
/// `value`, its class name built and interned afresh, caches it and returns it. The result is
/// borrowed from `cache`. A host failure propagates with the cache left as it was and no host
/// array left behind.
template <class Enum>
oxArray_tag const* accessEnumCache(HostArrayPtr& cache, typename Enum::Value value) {
    if (cache) return cache.get();
    std::uint32_t const number = value;
    cache = utils::constructEnumerationObject(std::span(&number, 1), [] { return qualifiedClassName<Enum>(); });
    return cache.get();
}

/// The setter of an enumeration property of `Enum`. Null `value`: nothing happens. Anything
/// but exactly one element throws RequireScalar and changes nothing. Otherwise `field` takes
/// the element's number unchecked and `cache` a shared handle to `value` itself.
template <class Enum>
void setEnumAndCache(oxArray_tag const* value, HostArrayPtr& cache, typename Enum::Value& field) {
    if (value == nullptr) return;
    field = static_cast<typename Enum::Value>(readScalarNumber(value));
    cache = utils::copyOxArrayToSharedOxArrayPtr(value);
}

}  // namespace reference::property::bridge
