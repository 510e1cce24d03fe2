// Host objects: one native record each, owned by the object and disposed of
// through its class when the last counted reference goes.
#include "HostInternal.hpp"
#include "Pool.hpp"

#include <boost/core/demangle.hpp>

#include <cassert>
#include <new>

namespace ocos {

COSInterface::COSInterface(COSClass const& cls, void* record) noexcept : class_(&cls), record_(record) {
    ovrin::host::objectCreated();
}

COSInterface::~COSInterface() {
    if (class_->definition().dispose != nullptr) class_->definition().dispose(record_);
    ovrin::host::objectDestroyed();
}

long COSInterface::referenceCount() const noexcept { return references_.load(std::memory_order_acquire); }

void* COSInterface::getData(std::type_info const& expected) const {
    ovrin::host::enter("COSInterface::getData");
    std::type_info const* const actual = class_->definition().nativeType;
    if (actual != nullptr && *actual == expected) return record_;
    COSClass const* const expectedClass = ovrin::host::findClassOfType(expected);
    std::string const expectedName = expectedClass != nullptr
                                         ? "class '" + expectedClass->name() + "'"
                                         : "unregistered native type " + boost::core::demangle(expected.name());
    throw ovrin::HostError("COSInterface::getData: expected a record of " + expectedName +
                           ", found a record of class '" + class_->name() + "'");
}

COSInterfacePtr::COSInterfacePtr(COSInterfacePtr const& other) noexcept : object_(other.object_) {
    if (object_ != nullptr) object_->references_.fetch_add(1, std::memory_order_relaxed);
}

COSInterfacePtr::~COSInterfacePtr() {
    if (object_ == nullptr) return;
    long const before = object_->references_.fetch_sub(1, std::memory_order_acq_rel);
    assert(before > 0 && "Reference count is already zero.");
    if (before == 1) {
        object_->~COSInterface();
        ovrin::host::pool::release(object_, sizeof(COSInterface));
    }
}

COSInterfacePtr makeObject(COSClass const& cls, void* record) {
    void* const block = ovrin::host::pool::allocate(sizeof(COSInterface));
    return COSInterfacePtr(new (block) COSInterface(cls, record));  // the constructor cannot throw
}

}  // namespace ocos

ocos::COSInterfacePtr omWrapData(void* record, ocos::COSClass* cls) {
    ovrin::host::enter("omWrapData");
    if (record == nullptr) throw ovrin::HostError("omWrapData: expected a record, found null");
    if (cls == nullptr) throw ovrin::HostError("omWrapData: expected a registered class, found null");
    if (ovrin::host::findClass(cls->identity()) != cls)
        throw ovrin::HostError("omWrapData: expected the registered class '" + cls->name() +
                               "', found an unregistered copy of it");
    if (cls->isEnumeration())
        throw ovrin::HostError("omWrapData: expected a record class, found enumeration class '" + cls->name() + "'");
    return ocos::makeObject(*cls, record);
}
