// The class registry. A registered class hangs off its interned name, so finding
// the class of an identity is one atomic load; classes by native type are a list
// that only grows at its head. Registration takes the mutex; lookups take none.
#include "HostInternal.hpp"

#include <memory>
#include <mutex>
#include <vector>

namespace {

/// The first class registered for one native type; immutable once published.
struct TypeEntry {
    std::type_info const* type;
    ocos::COSClass const* cls;
    TypeEntry const* next;  ///< the entry published before this one
};

/// Head of the list of native types, newest first; each type appears once.
std::atomic<TypeEntry const*> typesHead{nullptr};

/// Owns the classes and the type entries; never destroyed: classes live as long as the process.
struct Registry {
    std::mutex mutex;  ///< serialises registration
    std::vector<std::unique_ptr<ocos::COSClass>> classes;
    std::vector<std::unique_ptr<TypeEntry>> types;
};

Registry& registry() {
    static Registry* const instance = new Registry;
    return *instance;
}

TypeEntry const* findType(std::type_info const& type) noexcept {
    for (TypeEntry const* entry = typesHead.load(std::memory_order_acquire); entry != nullptr; entry = entry->next)
        if (*entry->type == type) return entry;
    return nullptr;
}

}  // namespace

namespace ocos {

COSClass::COSClass(ClassIdentity identity, ClassDefinition definition)
    : identity_(identity), definition_(std::move(definition)) {}

COSClass* COSClass::getClass(ClassIdentity identity) {
    ovrin::host::enter("COSClass::getClass");
    return ovrin::host::findClass(identity);
}

COSClass& COSClass::define(ClassDefinition definition) {
    ovrin::host::enter("COSClass::define");
    std::string const& name = definition.qualifiedName;
    if (!definition.isEnumeration && (definition.nativeType == nullptr || definition.dispose == nullptr))
        throw ovrin::HostError("COSClass::define: expected a native type and a dispose function for record class '" +
                               name + "', found " + (definition.nativeType == nullptr ? "no native type" : "no dispose"));
    ClassIdentity const identity = ovrin::host::intern(name);
    Registry& r = registry();
    std::lock_guard const lock(r.mutex);
    if (COSClass* const existing = identity->registered.load(std::memory_order_relaxed)) return *existing;
    std::type_info const* const nativeType = definition.nativeType;
    auto cls = std::make_unique<COSClass>(identity, std::move(definition));
    std::unique_ptr<TypeEntry> type;
    if (nativeType != nullptr && findType(*nativeType) == nullptr)
        type = std::make_unique<TypeEntry>(TypeEntry{nativeType, cls.get(), typesHead.load(std::memory_order_relaxed)});
    r.classes.reserve(r.classes.size() + 1);
    r.types.reserve(r.types.size() + 1);
    COSClass& result = *cls;
    r.classes.push_back(std::move(cls));  // from here on nothing throws
    if (type) {
        typesHead.store(type.get(), std::memory_order_release);
        r.types.push_back(std::move(type));
    }
    identity->registered.store(&result, std::memory_order_release);
    return result;
}

}  // namespace ocos

namespace ovrin::host {

ocos::COSClass* findClass(ocos::ClassIdentity identity) {
    if (identity == nullptr) throw HostError("COSClass::getClass: expected a registered class, found the null identity");
    ocos::COSClass* const cls = identity->registered.load(std::memory_order_acquire);
    if (cls == nullptr)
        throw HostError("COSClass::getClass: expected a registered class, found unknown class '" +
                        std::string(ocos::internal::nameOf(identity)) + "'");
    return cls;
}

ocos::COSClass const* findClassOfType(std::type_info const& type) noexcept {
    TypeEntry const* const entry = findType(type);
    return entry != nullptr ? entry->cls : nullptr;
}

}  // namespace ovrin::host
