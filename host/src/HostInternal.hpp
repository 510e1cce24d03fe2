// Private to the stand-in host: the array representation, the live counters,
// fault injection and the non-counting helpers that host operations share.
#pragma once

#include <ovrin/array.hpp>
#include <ovrin/error.hpp>
#include <ovrin/ocos.hpp>

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <new>
#include <span>
#include <string>
#include <string_view>
#include <typeinfo>
#include <utility>

/// One host array: this header, then its elements in the same block. The class fixes
/// what the elements are: 8-byte words of numbers for a numeric class, strings for the
/// string class, object references for an object array of records; an enumeration
/// object has none (its numbers are its `underlying` array).
struct oxArray_tag {
    /// What follows the header.
    enum class Payload : std::uint8_t { None, Words, Objects, Strings };

    /// A new array with `slots` elements of `payload` (zero words, empty objects, empty
    /// strings), holding its creator's one reference; from this thread's pool when small.
    /// Throws std::bad_alloc.
    static oxArray_tag* create(oxClassID id, std::size_t rowCount, std::size_t columnCount, Payload payload,
                               std::size_t slots);
    /// Destroys the elements (releasing the objects), the owned underlying array and the block.
    static void destroy(oxArray_tag const* array) noexcept;

    oxArray_tag(oxArray_tag const&) = delete;
    oxArray_tag& operator=(oxArray_tag const&) = delete;

    /// Bytes of the header, which the elements follow, aligned for any of them.
    static constexpr std::size_t headerBytes() noexcept {
        return (sizeof(oxArray_tag) + alignof(std::max_align_t) - 1) / alignof(std::max_align_t) *
               alignof(std::max_align_t);
    }

    /// Numbers of a numeric array, zero-filled when made; empty for any other payload.
    std::span<std::uint64_t> words() noexcept { return elements<std::uint64_t>(Payload::Words); }
    std::span<std::uint64_t const> words() const noexcept { return elements<std::uint64_t>(Payload::Words); }
    /// Elements of an object array of records, empty until set; empty for any other payload.
    std::span<ocos::COSInterfacePtr> objects() noexcept { return elements<ocos::COSInterfacePtr>(Payload::Objects); }
    std::span<ocos::COSInterfacePtr const> objects() const noexcept {
        return elements<ocos::COSInterfacePtr>(Payload::Objects);
    }
    /// Elements of a string array; empty for any other payload.
    std::span<std::u16string> strings() noexcept { return elements<std::u16string>(Payload::Strings); }
    std::span<std::u16string const> strings() const noexcept { return elements<std::u16string>(Payload::Strings); }

    mutable std::atomic<long> references{1};        ///< a new array holds its creator's reference
    std::size_t const rows;
    std::size_t const columns;
    std::size_t const slots;                        ///< elements of `payload` after the header
    ocos::COSClass const* objectClass = nullptr;    ///< class of an object array; null otherwise
    oxArray_tag* underlying = nullptr;              ///< owned numbers of an enumeration object
    oxClassID const classId;
    int scope = 0;
    Payload const payload;
    bool complex = false;
    bool internal = false;

private:
    oxArray_tag(oxClassID id, std::size_t rowCount, std::size_t columnCount, Payload kind,
                std::size_t slotCount) noexcept;
    ~oxArray_tag();

    template <class T>
    std::span<T> elements(Payload kind) noexcept {
        if (payload != kind) return {};
        return {std::launder(reinterpret_cast<T*>(reinterpret_cast<char*>(this) + headerBytes())), slots};
    }
    template <class T>
    std::span<T const> elements(Payload kind) const noexcept {
        if (payload != kind) return {};
        return {std::launder(reinterpret_cast<T const*>(reinterpret_cast<char const*>(this) + headerBytes())), slots};
    }
};

// Per-thread state (fault counts, live-count shards, free lists) uses the initial-exec TLS
// model: one thread-pointer-relative access instead of a call to __tls_get_addr. It needs
// a few hundred bytes of static TLS, which glibc keeps spare even for a library loaded late by dlopen.

namespace ovrin::host {

/// Counts one fallible call of this thread; throws the armed injected fault naming `operation`.
void enter(char const* operation);

/// Live counters: each thread counts in its own shard; the test hooks sum the shards.
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

/// The registered class of `identity` (no fault counted, no lock); a host error for an unknown or null identity.
ocos::COSClass* findClass(ocos::ClassIdentity identity);
/// The first class registered for native type `type`, or null. Takes no lock.
ocos::COSClass const* findClassOfType(std::type_info const& type) noexcept;

}  // namespace ovrin::host

namespace ocos {
/// A new host object owning `record`; the object holds its one reference, adopted by the result.
COSInterfacePtr makeObject(COSClass const& cls, void* record);
}  // namespace ocos

/// An interned class name. Made once per text, never changed or freed after it is published
/// (except `registered`), so any thread may read it without a lock.
struct ocos::InternedName {
    InternedName(std::string name, std::size_t nameHash) : text(std::move(name)), hash(nameHash) {}

    std::string const text;
    std::size_t const hash;                          ///< of `text`, by the interner's hash
    mutable std::atomic<COSClass*> registered{nullptr};  ///< set once, by the first COSClass::define of `text`
};

namespace ovrin::host {
/// The interned identity of `name` (no fault counted); a host error for an empty name.
/// Takes no lock and allocates nothing when `name` is already interned.
ocos::ClassIdentity intern(std::string_view name);
}  // namespace ovrin::host
