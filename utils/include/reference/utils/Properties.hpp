// Reference utilities: the property rules that every reference record shares
// for strings, lists of strings and shared host arrays.
#pragma once

#include <reference/utils/Export.hpp>

#include <ovrin/array.hpp>

#include <boost/intrusive_ptr.hpp>

#include <string>
#include <vector>

namespace reference::utils {

/// Scope value of every host array a record keeps in a cache: string lists and object arrays alike.
inline constexpr int cachedArrayScope = 6;

/// Assigns `*value` to `member`. A null `value` changes nothing and throws nothing,
/// the same rule as every pointer-taking property setter of the reference records.
REFERENCE_UTILS_API void setStringProperty(std::u16string& member, std::u16string const* value);

/// Stores the strings of `value` (a 1-by-N host string array) in `field` and caches a
/// fresh host array built from the stored field, releasing the old cached array.
/// Every string is read into a temporary first, so a failure while reading changes
/// nothing; a failure while building the new array leaves the new field and the old
/// cache. A null `value` changes nothing. An array that is not a string array is a host error.
REFERENCE_UTILS_API void setStringVectorAndCache(oxArray_tag const* value, boost::intrusive_ptr<oxArray_tag const>& cache,
                                                 std::vector<std::u16string>& field);

/// The cached host string array for `field`, built (1-by-N, 1-by-0 when empty) when
/// the cache is empty. Borrowed: valid until the cache is replaced or destroyed.
/// A failure while building leaves the cache empty.
REFERENCE_UTILS_API oxArray_tag const* accessStringVectorCache(boost::intrusive_ptr<oxArray_tag const>& cache,
                                                              std::vector<std::u16string> const& field);

/// A shared handle to the same array `array`, holding one more reference (no copy).
/// Null gives an empty handle.
REFERENCE_UTILS_API boost::intrusive_ptr<oxArray_tag const> copyOxArrayToSharedOxArrayPtr(oxArray_tag const* array);

}  // namespace reference::utils
