// Host class object system (OCOS): interned class identities, the class
// registry, host objects wrapping native records, and host arrays of objects.
#pragma once

#include <ovrin/array.hpp>
#include <ovrin/export.hpp>

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <typeinfo>
#include <utility>

namespace ocos {

/// An interned class name. Equal texts intern to the same pointer; the pointer
/// lives as long as the process. Null is the object system's null identity.
struct InternedName;
using ClassIdentity = InternedName const*;

class COSClass;
class COSClient;
class COSInterface;

namespace internal {
/// The identity of `name`; the same text always gives the same identity.
OVRIN_HOST_API ClassIdentity makeInterned(std::string_view name);
/// The null identity, which names no class.
OVRIN_HOST_API ClassIdentity nullValue() noexcept;
/// The text of an identity; empty for the null identity.
OVRIN_HOST_API std::string_view nameOf(ClassIdentity identity) noexcept;
}  // namespace internal

/// Counted reference to a host object. Copying takes a reference, destruction
/// gives it up; the last reference disposes of the object and its native record.
class OVRIN_HOST_API COSInterfacePtr {
public:
    COSInterfacePtr() noexcept = default;
    /// Adopts one reference already taken on `object`.
    explicit COSInterfacePtr(COSInterface* object) noexcept : object_(object) {}
    COSInterfacePtr(COSInterfacePtr const& other) noexcept;
    COSInterfacePtr(COSInterfacePtr&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
    COSInterfacePtr& operator=(COSInterfacePtr other) noexcept {
        std::swap(object_, other.object_);
        return *this;
    }
    ~COSInterfacePtr();

    COSInterface* get() const noexcept { return object_; }
    COSInterface* operator->() const noexcept { return object_; }
    explicit operator bool() const noexcept { return object_ != nullptr; }
    /// Gives up the reference now.
    void reset() noexcept { COSInterfacePtr().swap(*this); }
    void swap(COSInterfacePtr& other) noexcept { std::swap(object_, other.object_); }

private:
    COSInterface* object_ = nullptr;
};

/// What the host needs to know to make, wrap and dispose of objects of one class.
struct ClassDefinition {
    std::string qualifiedName;                      ///< namespace, ".", class name
    std::type_info const* nativeType = nullptr;     ///< type of the wrapped record; null for enumerations
    void (*dispose)(void* record) noexcept = nullptr;  ///< deletes a wrapped record
    void* (*makeDefault)() = nullptr;               ///< new default record on the heap, or null if none
    bool isEnumeration = false;                     ///< constructed from unsigned 32-bit numbers
};

/// A registered host class. Registered classes live as long as the process.
class OVRIN_HOST_API COSClass {
public:
    /// The class registered under `identity`. Throws a host error for an unknown or null identity.
    static COSClass* getClass(ClassIdentity identity);
    /// Registers a class; registering a name again returns the class already there.
    static COSClass& define(ClassDefinition definition);

    ClassIdentity identity() const noexcept { return identity_; }
    std::string const& name() const noexcept { return definition_.qualifiedName; }
    ClassDefinition const& definition() const noexcept { return definition_; }
    bool isEnumeration() const noexcept { return definition_.isEnumeration; }

    COSClass(ClassIdentity identity, ClassDefinition definition);

private:
    ClassIdentity identity_;
    ClassDefinition definition_;
};

/// A host object: one native record of a registered class, owned by the object.
class OVRIN_HOST_API COSInterface {
public:
    COSInterface(COSInterface const&) = delete;
    COSInterface& operator=(COSInterface const&) = delete;

    /// Class side: the class of this object.
    COSClass const& getClass() const noexcept { return *class_; }
    /// Interface side: the wrapped record, borrowed. Throws a host error naming both
    /// classes when the record is not of the `expected` native type.
    void* getData(std::type_info const& expected) const;

    /// Number of references held on this object.
    long referenceCount() const noexcept;

private:
    friend class COSInterfacePtr;
    friend COSInterfacePtr makeObject(COSClass const& cls, void* record);
    COSInterface(COSClass const& cls, void* record) noexcept;
    ~COSInterface();

    COSClass const* class_;
    void* record_;
    mutable std::atomic<long> references_{1};  ///< atomic: elements of a shared array are read from many threads
};

}  // namespace ocos

/// The host's public client, on whose behalf objects are constructed. Never null.
OVRIN_HOST_API ocos::COSClient* COSGetPublicClient();

/// Constructs a 1-by-1 object of class `cls` from `nargs` argument arrays; the
/// caller owns the one reference of the result. An enumeration class takes one
/// unsigned 32-bit numeric array of any size and keeps its own copy of the numbers
/// as the object's underlying array; a record class takes no argument and makes a
/// default record. Throws a host error for an unregistered class or bad arguments.
OVRIN_HOST_API oxArray_tag* omConstructObjectWithClient(ocos::ClassIdentity cls, int nargs,
                                                        oxArray_tag const* const* args, ocos::COSClient* client);

/// Wraps `record` (heap-allocated, of the class's native type) as a new host object
/// that owns it from now on and disposes of it through its class. On failure the
/// record is not adopted and stays the caller's.
OVRIN_HOST_API ocos::COSInterfacePtr omWrapData(void* record, ocos::COSClass* cls);

/// New `rows` by `columns` object array of class `cls` with empty elements; the
/// caller owns the one reference. Throws a host error for an unregistered class.
OVRIN_HOST_API oxArray_tag* omCreateOCOSMatrix(std::size_t rows, std::size_t columns, ocos::ClassIdentity cls);
/// New 1-by-1 object array holding `object` (one more reference to it); the caller owns the array.
OVRIN_HOST_API oxArray_tag* omCreateOCOSScalar(ocos::COSInterfacePtr const& object);
/// Stores `object` at `index` of an object array, taking a reference and releasing the old element.
/// Throws a host error for another class, a non-object array or an index out of range.
OVRIN_HOST_API void omSetArrayElement(oxArray_tag* array, std::size_t index, ocos::COSInterfacePtr const& object);
/// The object at `index` of an object array, with a new reference for the caller.
/// Throws a host error for a non-object array, an index out of range or an empty element.
OVRIN_HOST_API ocos::COSInterfacePtr omGetArrayElement(oxArray_tag const* array, std::size_t index);
/// The array an object array stands on: the numbers of an enumeration object, or the array itself.
/// Borrowed from `array`.
OVRIN_HOST_API oxArray_tag const* omGetUnderlyingArray(oxArray_tag const* array);
/// The number of elements of `omGetUnderlyingArray(array)`.
OVRIN_HOST_API std::size_t omGetNumberOfElementsInUnderlyingArray(oxArray_tag const* array);
/// Marks an object array as held by the object system itself (its "internal" flag);
/// `deep` also marks the arrays its elements stand on.
OVRIN_HOST_API void ocosConvertArrayToInternalInPlace(oxArray_tag* array, bool deep);
