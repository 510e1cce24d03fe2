// The one getter/setter pair behind every enumeration-valued property: the record
// keeps the number, the host sees an object of the enumeration's host class.
#pragma once

#include "bridge/ClassIdentity.hpp"

#include <reference/property/HostArray.hpp>

#include <cstdint>
#include <string>

namespace reference::property::bridge {

/// Getter core. Returns the cached array when there is one (the number is not looked at);
/// otherwise constructs a host object of the class named by `qualifiedName()` from
/// `number`, caches it and returns it. The result is borrowed from `cache`. A host
/// failure propagates with the cache left as it was and no host array left behind.
oxArray_tag const* accessEnumNumberCache(HostArrayPtr& cache, std::uint32_t number, std::string (*qualifiedName)());

/// Setter core, first half: the number of the one element under a non-null `value`, as it
/// is (no range check). Throws RequireScalar unless `value` stands on exactly one element.
std::uint32_t readScalarNumber(oxArray_tag const* value);

/// Setter core, second half: `cache` takes a shared handle to `value` itself, releasing the old one.
void cacheAssignedValue(oxArray_tag const* value, HostArrayPtr& cache);

/// The getter of an enumeration property of `Enum`: see accessEnumNumberCache.
template <class Enum>
oxArray_tag const* accessEnumCache(HostArrayPtr& cache, typename Enum::Value value) {
    if (cache) return cache.get();  // a filled cache costs no further call
    return accessEnumNumberCache(cache, static_cast<std::uint32_t>(value), &qualifiedClassName<Enum>);
}

/// The setter of an enumeration property of `Enum`. Null `value`: nothing happens. Anything
/// but exactly one element throws RequireScalar and changes nothing. Otherwise `field` takes
/// the element's number unchecked and `cache` a shared handle to `value` itself.
template <class Enum>
void setEnumAndCache(oxArray_tag const* value, HostArrayPtr& cache, typename Enum::Value& field) {
    if (value == nullptr) return;
    field = static_cast<typename Enum::Value>(readScalarNumber(value));
    cacheAssignedValue(value, cache);
}

}  // namespace reference::property::bridge
