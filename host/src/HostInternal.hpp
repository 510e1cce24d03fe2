// Private to the stand-in host: the array representation, the live counters,
// fault injection and the non-counting helpers that host operations share.
#pragma once

#include <ovrin/array.hpp>
#include <ovrin/error.hpp>
#include <ovrin/ocos.hpp>

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

/// One host array. Exactly one payload vector is in use, chosen by `classId`.
struct oxArray_tag {
    oxArray_tag(oxClassID id, std::size_t rowCount, std::size_t columnCount) noexcept;
    oxArray_tag(oxArray_tag const&) = delete;
    oxArray_tag& operator=(oxArray_tag const&) = delete;
    ~oxArray_tag();

    oxClassID const classId;
    std::size_t const rows;
    std::size_t const columns;
    bool complex = false;
    std::vector<std::uint64_t> numeric;             ///< numeric payload, zero-filled, 8-byte aligned
    std::vector<ocos::COSInterfacePtr> objects;     ///< object elements, empty until set
    std::vector<std::u16string> strings;            ///< string elements
    ocos::COSClass const* objectClass = nullptr;    ///< class of an object array; null otherwise
    oxArray_tag* underlying = nullptr;              ///< owned numbers of an enumeration object
    mutable std::atomic<long> references{1};        ///< a new array holds its creator's reference
    int scope = 0;
    bool internal = false;
};

namespace ovrin::host {

/// Counts one fallible call of this thread; throws the armed injected fault naming `operation`.
void enter(char const* operation);

/// Live counters, process-wide.
void arrayCreated() noexcept;
void arrayDestroyed() noexcept;
void objectCreated() noexcept;
void objectDestroyed() noexcept;

/// `rows * columns`, or a host error when it does not fit.
std::size_t elementCount(std::size_t rows, std::size_t columns);

/// The array, or a host error naming `operation` when it is null.
oxArray_tag const& require(oxArray_tag const* array, char const* operation);
oxArray_tag& require(oxArray_tag* array, char const* operation);

/// A host error unless `index` addresses an element of `array`.
void requireIndex(oxArray_tag const& array, std::size_t index, char const* operation);

/// How an array is described in messages: "a 1-by-3 uint32 array", "a 1-by-1 object array of class x.Y".
std::string describe(oxArray_tag const& array);
/// The word of a built-in class, as "uint32", or the qualified name of an object array's class.
std::string classWord(oxArray_tag const& array);
/// Bytes of one element of a numeric class; 0 for a class that is not numeric.
std::size_t numericElementSize(oxClassID classId) noexcept;

/// New numeric array, zero-filled (no fault counted).
oxArray_tag* createNumeric(std::size_t rows, std::size_t columns, oxClassID classId, bool complex);
/// New object array of a record class (no fault counted).
oxArray_tag* createObjectArray(std::size_t rows, std::size_t columns, ocos::COSClass const& cls);

/// The registered class of `identity` (no fault counted); a host error for an unknown or null identity.
ocos::COSClass* findClass(ocos::ClassIdentity identity);
/// The first class registered for native type `type`, or null.
ocos::COSClass const* findClassOfType(std::type_info const& type) noexcept;

}  // namespace ovrin::host

namespace ocos {
/// A new host object owning `record`; the object holds its one reference, adopted by the result.
COSInterfacePtr makeObject(COSClass const& cls, void* record);
}  // namespace ocos

namespace ovrin::host {
/// The interned identity of `name` (no fault counted); a host error for an empty name.
ocos::ClassIdentity intern(std::string_view name);
}  // namespace ovrin::host
