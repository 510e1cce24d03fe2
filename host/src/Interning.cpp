// Interned class names: one identity per text, alive until the process ends.
#include "HostInternal.hpp"

#include <mutex>
#include <unordered_map>

struct ocos::InternedName {
    std::string text;
};

namespace {

struct InternTable {
    std::mutex mutex;
    std::unordered_map<std::string_view, std::unique_ptr<ocos::InternedName>> names;  ///< keys view the values' texts
};

/// Never destroyed: identities must outlive every static that holds one.
InternTable& table() {
    static InternTable* const instance = new InternTable;
    return *instance;
}

}  // namespace

namespace ovrin::host {

ocos::ClassIdentity intern(std::string_view name) {
    if (name.empty()) throw HostError("makeInterned: expected a non-empty class name, found an empty one");
    InternTable& t = table();
    std::lock_guard const lock(t.mutex);
    auto const found = t.names.find(name);
    if (found != t.names.end()) return found->second.get();
    auto entry = std::make_unique<ocos::InternedName>(ocos::InternedName{std::string(name)});
    std::string_view const key = entry->text;
    return t.names.emplace(key, std::move(entry)).first->second.get();
}

}  // namespace ovrin::host

namespace ocos::internal {

ClassIdentity makeInterned(std::string_view name) {
    ovrin::host::enter("makeInterned");
    return ovrin::host::intern(name);
}

ClassIdentity nullValue() noexcept { return nullptr; }

std::string_view nameOf(ClassIdentity identity) noexcept {
    return identity != nullptr ? std::string_view(identity->text) : std::string_view();
}

}  // namespace ocos::internal
