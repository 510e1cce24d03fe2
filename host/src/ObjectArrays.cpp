// Object arrays: creation, element access, underlying arrays and the internal flag.
#include "HostInternal.hpp"

namespace {

/// An object array of record elements (not an enumeration object), or a host error naming `operation`.
template <class Array>
Array& requireRecordArray(Array* array, char const* operation) {
    Array& a = ovrin::host::require(array, operation);
    if (a.classId != oxOBJECT_CLASS || a.underlying != nullptr)
        throw ovrin::HostError(std::string(operation) + ": expected an object array of records, found " +
                               ovrin::host::describe(a));
    return a;
}

}  // namespace

namespace ovrin::host {

oxArray_tag* createObjectArray(std::size_t rows, std::size_t columns, ocos::COSClass const& cls) {
    if (cls.isEnumeration())
        throw HostError("omCreateOCOSMatrix: expected a record class, found enumeration class '" + cls.name() + "'");
    std::size_t const count = elementCount(rows, columns);
    oxArray_tag* const array =
        oxArray_tag::create(oxOBJECT_CLASS, rows, columns, oxArray_tag::Payload::Objects, count);
    array->objectClass = &cls;
    return array;
}

}  // namespace ovrin::host

oxArray_tag* omCreateOCOSMatrix(std::size_t rows, std::size_t columns, ocos::ClassIdentity cls) {
    ovrin::host::enter("omCreateOCOSMatrix");
    return ovrin::host::createObjectArray(rows, columns, *ovrin::host::findClass(cls));
}

oxArray_tag* omCreateOCOSScalar(ocos::COSInterfacePtr const& object) {
    ovrin::host::enter("omCreateOCOSScalar");
    if (!object) throw ovrin::HostError("omCreateOCOSScalar: expected a host object, found null");
    oxArray_tag* const array = ovrin::host::createObjectArray(1, 1, object->getClass());
    array->objects()[0] = object;
    return array;
}

void omSetArrayElement(oxArray_tag* array, std::size_t index, ocos::COSInterfacePtr const& object) {
    ovrin::host::enter("omSetArrayElement");
    oxArray_tag& a = requireRecordArray(array, "omSetArrayElement");
    ovrin::host::requireIndex(a, index, "omSetArrayElement");
    if (!object) throw ovrin::HostError("omSetArrayElement: expected a host object, found null");
    if (&object->getClass() != a.objectClass)
        throw ovrin::HostError("omSetArrayElement: expected an object of class '" + a.objectClass->name() +
                               "', found an object of class '" + object->getClass().name() + "'");
    a.objects()[index] = object;
}

ocos::COSInterfacePtr omGetArrayElement(oxArray_tag const* array, std::size_t index) {
    ovrin::host::enter("omGetArrayElement");
    oxArray_tag const& a = requireRecordArray(array, "omGetArrayElement");
    ovrin::host::requireIndex(a, index, "omGetArrayElement");
    std::span<ocos::COSInterfacePtr const> const elements = a.objects();
    ocos::COSInterfacePtr const& element = elements[index];
    if (!element)
        throw ovrin::HostError("omGetArrayElement: expected an object at index " + std::to_string(index) +
                               ", found an empty element of " + ovrin::host::describe(a));
    // Callers walk arrays in order: start fetching the next element's object while this one is used.
    if (index + 1 < elements.size()) __builtin_prefetch(elements[index + 1].get());
    return element;
}

oxArray_tag const* omGetUnderlyingArray(oxArray_tag const* array) {
    ovrin::host::enter("omGetUnderlyingArray");
    oxArray_tag const& a = ovrin::host::require(array, "omGetUnderlyingArray");
    return a.underlying != nullptr ? a.underlying : &a;
}

std::size_t omGetNumberOfElementsInUnderlyingArray(oxArray_tag const* array) {
    ovrin::host::enter("omGetNumberOfElementsInUnderlyingArray");
    oxArray_tag const& a = ovrin::host::require(array, "omGetNumberOfElementsInUnderlyingArray");
    oxArray_tag const& u = a.underlying != nullptr ? *a.underlying : a;
    return u.rows * u.columns;
}

void ocosConvertArrayToInternalInPlace(oxArray_tag* array, bool deep) {
    ovrin::host::enter("ocosConvertArrayToInternalInPlace");
    oxArray_tag& a = ovrin::host::require(array, "ocosConvertArrayToInternalInPlace");
    if (a.classId != oxOBJECT_CLASS)
        throw ovrin::HostError("ocosConvertArrayToInternalInPlace: expected an object array, found " +
                               ovrin::host::describe(a));
    a.internal = true;
    if (deep && a.underlying != nullptr) a.underlying->internal = true;
}
