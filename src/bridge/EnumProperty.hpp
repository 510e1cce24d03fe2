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

/// Setter core. Null `value`: nothing happens. Anything but exactly one element throws
/// RequireScalar and changes nothing. Otherwise stores the element's number in `number`
/// unchecked and caches a shared handle to `value` itself.
void setEnumNumberAndCache(oxArray_tag const* value, HostArrayPtr& cache, std::uint32_t& number);

/// The getter of an enumeration property of `Enum`: see accessEnumNumberCache.
template <class Enum>
oxArray_tag const* accessEnumCache(HostArrayPtr& cache, typename Enum::Value value) {
    return accessEnumNumberCache(cache, static_cast<std::uint32_t>(value), &qualifiedClassName<Enum>);
}

/// The setter of an enumeration property of `Enum`: see setEnumNumberAndCache.
/// `field` changes only when the set succeeds.
template <class Enum>
void setEnumAndCache(oxArray_tag const* value, HostArrayPtr& cache, typename Enum::Value& field) {
    std::uint32_t number = field;
    setEnumNumberAndCache(value, cache, number);
    field = static_cast<typename Enum::Value>(number);
}

}  // namespace reference::property::bridge
