// Process-wide live counters and the other test hooks that inspect host state.
#include "HostInternal.hpp"

#include <ovrin/testing.hpp>

#include <cassert>

namespace {

std::atomic<std::size_t> arraysAlive{0};
std::atomic<std::size_t> objectsAlive{0};

}  // namespace

namespace ovrin::host {

void arrayCreated() noexcept { arraysAlive.fetch_add(1, std::memory_order_relaxed); }
void arrayDestroyed() noexcept {
    [[maybe_unused]] std::size_t const before = arraysAlive.fetch_sub(1, std::memory_order_relaxed);
    assert(before > 0 && "more arrays destroyed than created");
}
void objectCreated() noexcept { objectsAlive.fetch_add(1, std::memory_order_relaxed); }
void objectDestroyed() noexcept {
    [[maybe_unused]] std::size_t const before = objectsAlive.fetch_sub(1, std::memory_order_relaxed);
    assert(before > 0 && "more objects disposed of than created");
}

}  // namespace ovrin::host

namespace ovrin::testing {

std::size_t liveArrays() noexcept { return arraysAlive.load(std::memory_order_relaxed); }
std::size_t liveObjects() noexcept { return objectsAlive.load(std::memory_order_relaxed); }

long referenceCount(oxArray_tag const* array) {
    return host::require(array, "referenceCount").references.load(std::memory_order_acquire);
}

long referenceCount(ocos::COSInterface const* object) {
    if (object == nullptr) throw HostError("referenceCount: expected a host object, found null");
    return object->referenceCount();
}

std::string className(oxArray_tag const* array) { return host::classWord(host::require(array, "className")); }

}  // namespace ovrin::testing
