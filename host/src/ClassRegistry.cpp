// The class registry: registered classes by identity and by native type.
// Locked, because tests register classes while other threads look them up.
#include "HostInternal.hpp"

#include <mutex>
#include <typeindex>
#include <unordered_map>

namespace {

struct Registry {
    std::mutex mutex;
    std::unordered_map<ocos::ClassIdentity, std::unique_ptr<ocos::COSClass>> byIdentity;
    std::unordered_map<std::type_index, ocos::COSClass const*> byNativeType;  ///< first class registered per type
};

/// Never destroyed: classes live as long as the process.
Registry& registry() {
    static Registry* const instance = new Registry;
    return *instance;
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
    auto const found = r.byIdentity.find(identity);
    if (found != r.byIdentity.end()) return *found->second;
    std::type_info const* const nativeType = definition.nativeType;
    auto cls = std::make_unique<COSClass>(identity, std::move(definition));
    COSClass& result = *cls;
    r.byIdentity.emplace(identity, std::move(cls));
    if (nativeType != nullptr) r.byNativeType.emplace(std::type_index(*nativeType), &result);
    return result;
}

}  // namespace ocos

namespace ovrin::host {

ocos::COSClass* findClass(ocos::ClassIdentity identity) {
    if (identity == nullptr) throw HostError("COSClass::getClass: expected a registered class, found the null identity");
    Registry& r = registry();
    std::lock_guard const lock(r.mutex);
    auto const found = r.byIdentity.find(identity);
    if (found == r.byIdentity.end())
        throw HostError("COSClass::getClass: expected a registered class, found unknown class '" +
                        std::string(ocos::internal::nameOf(identity)) + "'");
    return found->second.get();
}

ocos::COSClass const* findClassOfType(std::type_info const& type) noexcept {
    Registry& r = registry();
    std::lock_guard const lock(r.mutex);
    auto const found = r.byNativeType.find(std::type_index(type));
    return found != r.byNativeType.end() ? found->second : nullptr;
}

}  // namespace ovrin::host
