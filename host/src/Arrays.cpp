// Host arrays: lifetime and reference counting, numeric creation, scope, the
// internal flag and the queries.
#include "HostInternal.hpp"
#include "Pool.hpp"

#include <cassert>
#include <limits>
#include <memory>
#include <new>

namespace {

std::size_t elementBytes(oxArray_tag::Payload payload) noexcept {
    switch (payload) {
        case oxArray_tag::Payload::Words: return sizeof(std::uint64_t);
        case oxArray_tag::Payload::Objects: return sizeof(ocos::COSInterfacePtr);
        case oxArray_tag::Payload::Strings: return sizeof(std::u16string);
        case oxArray_tag::Payload::None: break;
    }
    return 0;
}

/// Bytes of the block of an array with `slots` elements of `payload`; the caller checked it fits.
std::size_t blockBytes(oxArray_tag::Payload payload, std::size_t slots) noexcept {
    return oxArray_tag::headerBytes() + slots * elementBytes(payload);
}

}  // namespace

oxArray_tag* oxArray_tag::create(oxClassID id, std::size_t rowCount, std::size_t columnCount, Payload payload,
                                 std::size_t slots) {
    std::size_t const size = elementBytes(payload);
    if (size != 0 && slots > (std::numeric_limits<std::size_t>::max() - headerBytes()) / size) throw std::bad_alloc();
    void* const block = ovrin::host::pool::allocate(blockBytes(payload, slots));
    auto* const array = new (block) oxArray_tag(id, rowCount, columnCount, payload, slots);
    char* const first = static_cast<char*>(block) + headerBytes();
    switch (payload) {
        case Payload::Words: std::uninitialized_value_construct_n(reinterpret_cast<std::uint64_t*>(first), slots); break;
        case Payload::Objects:
            std::uninitialized_default_construct_n(reinterpret_cast<ocos::COSInterfacePtr*>(first), slots);
            break;
        case Payload::Strings:
            std::uninitialized_value_construct_n(reinterpret_cast<std::u16string*>(first), slots);
            break;
        case Payload::None: break;
    }
    return array;
}

void oxArray_tag::destroy(oxArray_tag const* array) noexcept {
    auto* const a = const_cast<oxArray_tag*>(array);
    std::size_t const bytes = blockBytes(a->payload, a->slots);
    a->~oxArray_tag();
    ovrin::host::pool::release(a, bytes);
}

oxArray_tag::oxArray_tag(oxClassID id, std::size_t rowCount, std::size_t columnCount, Payload kind,
                         std::size_t slotCount) noexcept
    : rows(rowCount), columns(columnCount), slots(slotCount), classId(id), payload(kind) {
    static_assert(alignof(oxArray_tag) <= alignof(std::max_align_t));
    ovrin::host::arrayCreated();
}

oxArray_tag::~oxArray_tag() {
    std::destroy(objects().begin(), objects().end());
    std::destroy(strings().begin(), strings().end());
    if (underlying != nullptr) intrusive_ptr_release(underlying);
    ovrin::host::arrayDestroyed();
}

void intrusive_ptr_add_ref(oxArray_tag const* array) noexcept {
    assert(array != nullptr && "intrusive_ptr_add_ref on a null array");
    [[maybe_unused]] long const before = array->references.fetch_add(1, std::memory_order_relaxed);
    assert(before > 0 && "reference taken on a destroyed array");
}

void intrusive_ptr_release(oxArray_tag const* array) noexcept {
    assert(array != nullptr && "intrusive_ptr_release on a null array");
    long const before = array->references.fetch_sub(1, std::memory_order_acq_rel);
    assert(before > 0 && "Reference count is already zero.");
    if (before == 1) oxArray_tag::destroy(array);
}

namespace matrix {

void destroyArray(oxArray_tag* array) noexcept {
    if (array == nullptr) return;
    assert(array->references.load(std::memory_order_acquire) == 1 &&
           "destroyArray on an array that others still reference");
    oxArray_tag::destroy(array);
}

unique_array from_ovrin(oxArray_tag* array) noexcept { return unique_array(array); }

namespace detail {

oxArray_tag* do_create_uninitnumeric(std::size_t rows, std::size_t columns, oxClassID classId, bool complex) {
    ovrin::host::enter("do_create_uninitnumeric");
    return ovrin::host::createNumeric(rows, columns, classId, complex);
}

}  // namespace detail
}  // namespace matrix

void oxSetArrayScope(oxArray_tag* array, int scope) {
    ovrin::host::enter("oxSetArrayScope");
    ovrin::host::require(array, "oxSetArrayScope").scope = scope;
}

void* oxGetData(oxArray_tag const* array) {
    ovrin::host::enter("oxGetData");
    oxArray_tag const& a = ovrin::host::require(array, "oxGetData");
    if (ovrin::host::numericElementSize(a.classId) == 0)
        throw ovrin::HostError("oxGetData: expected a numeric array, found " + ovrin::host::describe(a));
    // The payload is owned by the array; the host hands it out writable, as its C interface does.
    return const_cast<std::uint64_t*>(a.words().data());
}

oxClassID oxGetClassID(oxArray_tag const* array) { return ovrin::host::require(array, "oxGetClassID").classId; }
std::size_t oxGetM(oxArray_tag const* array) { return ovrin::host::require(array, "oxGetM").rows; }
std::size_t oxGetN(oxArray_tag const* array) { return ovrin::host::require(array, "oxGetN").columns; }
std::size_t oxGetNumberOfElements(oxArray_tag const* array) {
    oxArray_tag const& a = ovrin::host::require(array, "oxGetNumberOfElements");
    return a.rows * a.columns;
}
int oxGetArrayScope(oxArray_tag const* array) { return ovrin::host::require(array, "oxGetArrayScope").scope; }
bool oxIsInternal(oxArray_tag const* array) { return ovrin::host::require(array, "oxIsInternal").internal; }
bool oxIsComplex(oxArray_tag const* array) { return ovrin::host::require(array, "oxIsComplex").complex; }

namespace ovrin::host {

std::size_t elementCount(std::size_t rows, std::size_t columns) {
    if (columns != 0 && rows > std::numeric_limits<std::size_t>::max() / columns)
        throw HostError("array size: expected rows * columns to fit in size_t, found " + std::to_string(rows) +
                        "-by-" + std::to_string(columns));
    return rows * columns;
}

oxArray_tag const& require(oxArray_tag const* array, char const* operation) {
    if (array == nullptr) throw HostError(std::string(operation) + ": expected an array, found null");
    return *array;
}

oxArray_tag& require(oxArray_tag* array, char const* operation) {
    if (array == nullptr) throw HostError(std::string(operation) + ": expected an array, found null");
    return *array;
}

void requireIndex(oxArray_tag const& array, std::size_t index, char const* operation) {
    if (index >= array.rows * array.columns)
        throw HostError(std::string(operation) + ": expected an index below " +
                        std::to_string(array.rows * array.columns) + ", found index " + std::to_string(index) +
                        " of " + describe(array));
}

std::size_t numericElementSize(oxClassID classId) noexcept {
    switch (classId) {
        case oxDOUBLE_CLASS: return sizeof(double);
        case oxINT32_CLASS: return sizeof(std::int32_t);
        case oxUINT32_CLASS: return sizeof(std::uint32_t);
        default: return 0;
    }
}

std::string classWord(oxArray_tag const& array) {
    switch (array.classId) {
        case oxOBJECT_CLASS: return array.objectClass != nullptr ? array.objectClass->name() : "object";
        case oxSTRING_CLASS: return "string";
        case oxDOUBLE_CLASS: return "double";
        case oxINT32_CLASS: return "int32";
        case oxUINT32_CLASS: return "uint32";
        default: return "unknown class " + std::to_string(static_cast<int>(array.classId));
    }
}

std::string describe(oxArray_tag const& array) {
    std::string const size = std::to_string(array.rows) + "-by-" + std::to_string(array.columns);
    if (array.classId != oxOBJECT_CLASS) return "a " + size + " " + classWord(array) + " array";
    if (array.underlying != nullptr) return "a " + size + " enumeration object of class " + classWord(array);
    return "a " + size + " object array of class " + classWord(array);
}

oxArray_tag* createNumeric(std::size_t rows, std::size_t columns, oxClassID classId, bool complex) {
    std::size_t const elementSize = numericElementSize(classId);
    if (elementSize == 0)
        throw HostError("do_create_uninitnumeric: expected a numeric class (double, int32 or uint32), found class id " +
                        std::to_string(static_cast<int>(classId)));
    std::size_t const count = elementCount(rows, columns);
    std::size_t const parts = complex ? 2 : 1;
    if (count > std::numeric_limits<std::size_t>::max() / (elementSize * parts))
        throw HostError("do_create_uninitnumeric: expected an array that fits in memory, found " +
                        std::to_string(rows) + "-by-" + std::to_string(columns));
    std::size_t const bytes = count * elementSize * parts;
    oxArray_tag* const array = oxArray_tag::create(classId, rows, columns, oxArray_tag::Payload::Words,
                                                   (bytes + sizeof(std::uint64_t) - 1) / sizeof(std::uint64_t));
    array->complex = complex;
    return array;
}

}  // namespace ovrin::host
