// Object-array properties: the one mechanism by which a field holding records
// (a vector of them, or one record) passes to and from the host as a host
// object array, with the per-property cache that keeps the array once built.
#pragma once

#include "ClassIdentity.hpp"
#include "CopyInPlace.hpp"

#include <reference/property/HostArray.hpp>
#include <reference/utils/HostObjects.hpp>
#include <reference/utils/Properties.hpp>

#include <ovrin/array.hpp>
#include <ovrin/ocos.hpp>

#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <typeinfo>
#include <utility>
#include <variant>
#include <vector>

namespace reference::property::bridge {

/// Reads every element of a host object array into new native records (copies).
template <class T>
using ArrayReader = std::function<std::vector<T>(oxArray_tag const*)>;

/// The native record wrapped by one element of a host object array; borrowed from the host object.
template <class T>
using ElementAccessor = std::function<T*(oxArray_tag const*, unsigned long)>;

/// How a setter reads its value: the whole array (vector fields) or one element (single records).
template <class T>
using ObjectReader = std::variant<ArrayReader<T>, ElementAccessor<T>>;

/// Builds a new host array standing for a stored field; the result holds the array's only reference.
template <class Field>
using FieldWriter = std::function<HostArrayPtr(Field const&)>;

/// Scope value of an array built without the scoped flag.
inline constexpr int unscopedArrayScope = 4;

/// The host identity of `T`'s class, interned afresh; the null identity for an empty name.
template <class T>
ocos::ClassIdentity classIdentity() {
    return utils::internedIdentity(qualifiedClassName<T>());
}

/// The native record wrapped by element `index` of `array`. Borrowed: the host object keeps
/// owning it, and it lives as long as `array` holds the element. An element of another class
/// is a host error naming both classes.
template <class T>
T* getNativeObject(oxArray_tag const* array, unsigned long index) {
    ocos::COSInterfacePtr const element = omGetArrayElement(array, index);
    return static_cast<T*>(element->getData(typeid(T)));
}

/// Copies of the records wrapped by every element of `array`, in index order.
template <class T>
std::vector<T> readObjectArray(oxArray_tag const* array) {
    std::size_t const count = omGetNumberOfElementsInUnderlyingArray(array);
    std::vector<T> records;
    records.reserve(count);
    for (std::size_t i = 0; i < count; ++i) records.emplace_back(CopyOf<T>{*getNativeObject<T>(array, i)});
    return records;
}

/// A new host object of `T`'s class adopting a heap copy of `record`; the heap copy is
/// freed here if the host does not adopt it.
template <class T>
ocos::COSInterfacePtr wrapNativeCopy(T const& record) {
    ocos::COSClass* const cls = ocos::COSClass::getClass(classIdentity<T>());
    auto heap = std::make_unique<T>(record.copy());
    ocos::COSInterfacePtr object = omWrapData(heap.get(), cls);
    static_cast<void>(heap.release());  // adopted by the host object
    return object;
}

/// A new 1-by-N host object array of `T`'s class, one object per record, marked internal;
/// scope utils::cachedArrayScope when `scoped`, else 4. A failure destroys the partly filled array.
template <class T>
HostArrayPtr createObjectArray(std::vector<T> const& records, bool scoped) {
    matrix::unique_array array = matrix::from_ovrin(omCreateOCOSMatrix(1, records.size(), classIdentity<T>()));
    for (std::size_t i = 0; i < records.size(); ++i) {
        ocos::COSInterfacePtr const element = wrapNativeCopy(records[i]);
        omSetArrayElement(array.get(), i, element);
    }
    ocosConvertArrayToInternalInPlace(array.get(), true);
    oxSetArrayScope(array.get(), scoped ? utils::cachedArrayScope : unscopedArrayScope);
    return HostArrayPtr(array.release(), false);
}

/// A new scalar host object array holding one object for `record`; neither marked internal nor scoped.
template <class T>
HostArrayPtr createObjectScalar(T const& record) {
    ocos::COSInterfacePtr element = wrapNativeCopy(record);
    matrix::unique_array array = matrix::from_ovrin(omCreateOCOSScalar(element));
    element.reset();
    return HostArrayPtr(array.release(), false);
}

/// The reader of a vector field.
template <class T>
ObjectReader<T> arrayReader() {
    return ArrayReader<T>(&readObjectArray<T>);
}

/// The reader of a single-record field.
template <class T>
ObjectReader<T> elementAccessor() {
    return ElementAccessor<T>(&getNativeObject<T>);
}

/// The writer of a vector field: every cached array is scoped.
template <class T>
FieldWriter<std::vector<T>> vectorWriter() {
    return [](std::vector<T> const& records) { return createObjectArray(records, true); };
}

/// The writer of a single-record field.
template <class T>
FieldWriter<T> recordWriter() {
    return &createObjectScalar<T>;
}

namespace detail {

/// The new value of `Field` read from `value` by whichever reader is held; the element accessor
/// reads index 0 without looking at the element count.
template <class T, class Field>
Field readField(ObjectReader<T> const& reader, oxArray_tag const* value) {
    return std::visit(
        [value](auto const& read) -> Field {
            using Read = std::decay_t<decltype(read)>;
            if constexpr (std::is_same_v<Read, ArrayReader<T>> && std::is_same_v<Field, std::vector<T>>) {
                return read(value);
            } else if constexpr (std::is_same_v<Read, ElementAccessor<T>> && std::is_same_v<Field, T>) {
                return read(value, 0)->copy();
            } else {
                throw std::logic_error("object property reader does not produce the field's type");
            }
        },
        reader);
}

}  // namespace detail

/// Setter body. Null changes nothing. Otherwise the field is replaced only once the new value is
/// fully read, and the cache only once the new array is fully built from the stored field: a read
/// failure changes nothing; a writer failure leaves the new field and the old cache.
template <class T, class Field>
void setObjectAndCache(oxArray_tag const* value, HostArrayPtr& cache, Field& field, ObjectReader<T> const& reader,
                       FieldWriter<Field> const& writer) {
    if (value == nullptr) return;
    Field fresh = detail::readField<T, Field>(reader, value);
    field = std::move(fresh);
    cache = writer(field);
}

/// Getter body: the cached array, built from `field` first when the cache is empty (a failure
/// leaves it empty). Borrowed: valid until the cache is replaced or destroyed.
template <class Field>
oxArray_tag const* accessObjectCache(HostArrayPtr& cache, Field const& field, FieldWriter<Field> const& writer) {
    if (!cache) cache = writer(field);
    return cache.get();
}

/// One vector property's setter, bound to the mechanism.
template <class T>
void setObjectVector(oxArray_tag const* value, HostArrayPtr& cache, std::vector<T>& field) {
    setObjectAndCache<T>(value, cache, field, arrayReader<T>(), vectorWriter<T>());
}

/// One vector property's getter, bound to the mechanism.
template <class T>
oxArray_tag const* accessObjectVector(HostArrayPtr& cache, std::vector<T> const& field) {
    if (cache) return cache.get();  // a filled cache costs no writer
    return accessObjectCache(cache, field, vectorWriter<T>());
}

}  // namespace reference::property::bridge
