// Host array library: the reference-counted array type of the host and the
// operations on it. Every array has a class, rows by columns, a payload
// (numeric data, object elements or strings), a reference count, a scope value
// and an "internal" flag.
#pragma once

#include <ovrin/export.hpp>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

/// The host's array. Opaque to callers: they reach it only through the
/// operations below and hold it through counted references.
struct oxArray_tag;

/// The host's class numbering of array payloads.
enum oxClassID : int {
    oxUNKNOWN_CLASS = 0,
    oxOBJECT_CLASS = 1,   ///< elements are host objects of one host class
    oxSTRING_CLASS = 2,   ///< elements are UTF-16 strings
    oxDOUBLE_CLASS = 6,
    oxINT32_CLASS = 12,
    oxUINT32_CLASS = 13,  ///< unsigned 32-bit numbers
};

/// Takes one more reference to `array`. Never fails.
OVRIN_HOST_API void intrusive_ptr_add_ref(oxArray_tag const* array) noexcept;
/// Gives up one reference; the last one destroys the array (and releases its elements).
OVRIN_HOST_API void intrusive_ptr_release(oxArray_tag const* array) noexcept;

/// Sets the scope value of an array (the host's lifetime class; 4 and 6 are the ones used here).
OVRIN_HOST_API void oxSetArrayScope(oxArray_tag* array, int scope);

/// Payload of a numeric array: `rows * columns` elements of its class, column-major.
/// Borrowed: valid while the array lives. Throws a host error for a non-numeric array.
OVRIN_HOST_API void* oxGetData(oxArray_tag const* array);

// Queries. None allocates; each throws a host error for a null array.
OVRIN_HOST_API oxClassID oxGetClassID(oxArray_tag const* array);
OVRIN_HOST_API std::size_t oxGetM(oxArray_tag const* array);
OVRIN_HOST_API std::size_t oxGetN(oxArray_tag const* array);
OVRIN_HOST_API std::size_t oxGetNumberOfElements(oxArray_tag const* array);
OVRIN_HOST_API int oxGetArrayScope(oxArray_tag const* array);
OVRIN_HOST_API bool oxIsInternal(oxArray_tag const* array);
OVRIN_HOST_API bool oxIsComplex(oxArray_tag const* array);

// String arrays (the host form of a list of texts).
/// New `rows` by `columns` string array of empty strings, holding one reference owned by the caller.
OVRIN_HOST_API oxArray_tag* oxCreateStringArray(std::size_t rows, std::size_t columns);
/// Element `index` of a string array, borrowed. Throws a host error for another class or an index out of range.
OVRIN_HOST_API std::u16string const& oxGetStringElement(oxArray_tag const* array, std::size_t index);
/// Replaces element `index` of a string array.
OVRIN_HOST_API void oxSetStringElement(oxArray_tag* array, std::size_t index, std::u16string text);

namespace matrix {

/// Destroys an array whatever its reference count (the owner's last reference). Null is ignored.
OVRIN_HOST_API void destroyArray(oxArray_tag* array) noexcept;

/// Destroys an owned array that has not been handed out yet.
struct ArrayDestroyer {
    void operator()(oxArray_tag* array) const noexcept { destroyArray(array); }
};

/// Sole owner of a newly created array; destroys it unless released.
using unique_array = std::unique_ptr<oxArray_tag, ArrayDestroyer>;

/// Adopts the caller's reference to a new array, adding none. Cannot fail.
OVRIN_HOST_API unique_array from_ovrin(oxArray_tag* array) noexcept;

namespace detail {
/// New `rows` by `columns` numeric array of class `classId`, contents unspecified,
/// holding one reference owned by the caller. Throws a host error for a non-numeric class.
OVRIN_HOST_API oxArray_tag* do_create_uninitnumeric(std::size_t rows, std::size_t columns, oxClassID classId,
                                                    bool complex);
}  // namespace detail

}  // namespace matrix
