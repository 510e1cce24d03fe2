// Interned class names: one identity per text, alive until the process ends.
// Lookups read an open-addressing table through an atomic pointer, with no lock;
// insertion and growth take the mutex.
#include "HostInternal.hpp"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>
#include <memory>
#include <mutex>
#include <vector>

namespace {

/// Identities by hash, linear probing, at most half full, so every probe ends at an empty slot.
/// Slots go from null to an identity once, under the interner's mutex, and never change again.
struct NameTable {
    explicit NameTable(std::size_t capacity)
        : mask(capacity - 1), slots(std::make_unique<std::atomic<ocos::InternedName const*>[]>(capacity)) {}

    std::size_t capacity() const noexcept { return mask + 1; }

    /// The identity of `name`, or null when this table does not hold it. Each slot is read once:
    /// a slot seen empty may hold another name by the time it is read again.
    ocos::InternedName const* find(std::string_view name, std::size_t hash) const noexcept {
        for (std::size_t i = hash & mask;; i = (i + 1) & mask) {
            ocos::InternedName const* const entry = slots[i].load(std::memory_order_acquire);
            if (entry == nullptr || (entry->hash == hash && entry->text == name)) return entry;
        }
    }

    /// The first empty slot on the probe path of `hash`. Only under the interner's mutex.
    std::atomic<ocos::InternedName const*>& emptySlotFor(std::size_t hash) const noexcept {
        for (std::size_t i = hash & mask;; i = (i + 1) & mask)
            if (slots[i].load(std::memory_order_relaxed) == nullptr) return slots[i];
    }

    std::size_t const mask;  ///< capacity - 1; the capacity is a power of two
    std::unique_ptr<std::atomic<ocos::InternedName const*>[]> const slots;
};

/// The table readers use; a larger copy replaces it when it would pass half full.
/// Constant-initialised, so reading it needs no guard.
std::atomic<NameTable const*> published{nullptr};

/// What insertion needs; never destroyed, so identities and every table ever published
/// (a reader may still be probing an old one) outlive every static that holds one.
struct Interner {
    std::mutex mutex;
    std::vector<std::unique_ptr<ocos::InternedName>> names;  ///< every identity, in order of interning
    std::vector<std::unique_ptr<NameTable>> tables;          ///< every table published; the last is current
};

Interner& interner() {
    static Interner* const instance = new Interner;
    return *instance;
}

constexpr std::size_t firstCapacity = 64;

/// Hash of a name from its length, its first eight bytes and its last sixteen: class names
/// share long prefixes ("ovrin.internal.reference.property.") and differ at the end. Equal
/// hashes still compare the whole text, so names alike in those bytes only probe further.
std::size_t hashOf(std::string_view name) noexcept {
    constexpr std::uint64_t multiplier = 0x517cc1b727220a95;  // as FxHash mixes
    std::uint64_t words[3] = {};
    std::memcpy(&words[0], name.data(), std::min<std::size_t>(sizeof words[0], name.size()));
    std::size_t const tail = std::min<std::size_t>(2 * sizeof words[0], name.size());
    std::memcpy(&words[1], name.data() + name.size() - tail, tail);
    std::uint64_t hash = name.size();
    for (std::uint64_t const word : words) hash = (std::rotl(hash, 5) ^ word) * multiplier;
    return static_cast<std::size_t>(hash ^ (hash >> 29));
}

/// Interns a name that the published table did not hold, under the mutex.
ocos::ClassIdentity insert(std::string_view name, std::size_t hash) {
    Interner& in = interner();
    std::lock_guard const lock(in.mutex);
    if (in.tables.empty()) in.tables.push_back(std::make_unique<NameTable>(firstCapacity));
    NameTable* table = in.tables.back().get();
    if (ocos::InternedName const* const found = table->find(name, hash))
        return found;  // interned by another thread since this one looked

    in.names.reserve(in.names.size() + 1);
    auto entry = std::make_unique<ocos::InternedName>(std::string(name), hash);
    ocos::InternedName const* const identity = entry.get();
    if (2 * (in.names.size() + 1) > table->capacity()) {
        auto larger = std::make_unique<NameTable>(2 * table->capacity());
        for (auto const& old : in.names) larger->emptySlotFor(old->hash).store(old.get(), std::memory_order_relaxed);
        in.tables.reserve(in.tables.size() + 1);
        table = larger.get();
        in.tables.push_back(std::move(larger));
    }
    in.names.push_back(std::move(entry));
    table->emptySlotFor(hash).store(identity, std::memory_order_release);
    published.store(table, std::memory_order_release);
    return identity;
}

}  // namespace

namespace ovrin::host {

ocos::ClassIdentity intern(std::string_view name) {
    if (name.empty()) throw HostError("makeInterned: expected a non-empty class name, found an empty one");
    std::size_t const hash = hashOf(name);
    if (NameTable const* const table = published.load(std::memory_order_acquire)) {
        if (ocos::InternedName const* const found = table->find(name, hash)) return found;
    }
    return insert(name, hash);
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
