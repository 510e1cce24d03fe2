// Live counters, one shard per thread summed on read, and the other test hooks that
// inspect host state.
#include "HostInternal.hpp"

#include <ovrin/testing.hpp>

#include <cassert>
#include <mutex>

namespace {

/// One thread's net counts: only its own thread writes them, so a write is a plain load
/// and store, never a locked instruction; a thread's shard lies in its own thread-local
/// storage, on no cache line that another thread writes. Net, so an object made on one
/// thread and disposed of on another leaves +1 in one shard and -1 in the other.
struct Shard {
    std::atomic<long> arrays;
    std::atomic<long> objects;
    Shard* previous;  ///< neighbours in the list of live threads' shards, under its mutex
    Shard* next;
    enum class Phase : unsigned char { Unused, Listed, Gone } phase;
};

[[gnu::tls_model("initial-exec")]] thread_local Shard shard;  ///< trivially destructible: reaching it costs no guard

/// Every listed shard and the counts of shards whose threads have ended; never destroyed,
/// so threads that end during static destruction still find it.
struct ShardList {
    std::mutex mutex;
    Shard* first = nullptr;  ///< shards of live threads, linked through their own members
    std::atomic<long> retiredArrays{0};
    std::atomic<long> retiredObjects{0};
};

ShardList& shardList() {
    static ShardList* const instance = new ShardList;
    return *instance;
}

/// Folds this thread's shard into the retired counts when the thread ends.
struct ShardOwner {
    bool armed = false;
    ~ShardOwner() {
        ShardList& list = shardList();
        std::lock_guard const lock(list.mutex);
        list.retiredArrays.fetch_add(shard.arrays.load(std::memory_order_relaxed), std::memory_order_relaxed);
        list.retiredObjects.fetch_add(shard.objects.load(std::memory_order_relaxed), std::memory_order_relaxed);
        (shard.previous != nullptr ? shard.previous->next : list.first) = shard.next;
        if (shard.next != nullptr) shard.next->previous = shard.previous;
        shard.phase = Shard::Phase::Gone;
    }
};

thread_local ShardOwner shardOwner;

/// Adds `delta` to this thread's count `mine`, or, once the thread's shard is gone, to `retired`.
void count(std::atomic<long> Shard::*mine, std::atomic<long> ShardList::*retired, long delta) noexcept {
    Shard& s = shard;
    if (s.phase == Shard::Phase::Unused) {
        ShardList& list = shardList();
        std::lock_guard const lock(list.mutex);
        s.next = list.first;
        if (list.first != nullptr) list.first->previous = &s;
        list.first = &s;
        shardOwner.armed = true;  // odr-use: registers the owner's destructor for this thread
        s.phase = Shard::Phase::Listed;
    }
    if (s.phase == Shard::Phase::Gone) {
        (shardList().*retired).fetch_add(delta, std::memory_order_relaxed);
        return;
    }
    std::atomic<long>& counter = s.*mine;
    counter.store(counter.load(std::memory_order_relaxed) + delta, std::memory_order_relaxed);
}

/// Retired counts plus every live thread's shard. Exact when no thread is counting.
long sum(std::atomic<long> Shard::*mine, std::atomic<long> ShardList::*retired) noexcept {
    ShardList& list = shardList();
    std::lock_guard const lock(list.mutex);
    long total = (list.*retired).load(std::memory_order_relaxed);
    for (Shard const* s = list.first; s != nullptr; s = s->next) total += (s->*mine).load(std::memory_order_relaxed);
    return total;
}

}  // namespace

namespace ovrin::host {

void arrayCreated() noexcept { count(&Shard::arrays, &ShardList::retiredArrays, 1); }
void arrayDestroyed() noexcept { count(&Shard::arrays, &ShardList::retiredArrays, -1); }
void objectCreated() noexcept { count(&Shard::objects, &ShardList::retiredObjects, 1); }
void objectDestroyed() noexcept { count(&Shard::objects, &ShardList::retiredObjects, -1); }

}  // namespace ovrin::host

namespace ovrin::testing {

std::size_t liveArrays() noexcept {
    long const total = sum(&Shard::arrays, &ShardList::retiredArrays);
    assert(total >= 0 && "more arrays destroyed than created");
    return static_cast<std::size_t>(total);
}

std::size_t liveObjects() noexcept {
    long const total = sum(&Shard::objects, &ShardList::retiredObjects);
    assert(total >= 0 && "more objects disposed of than created");
    return static_cast<std::size_t>(total);
}

long referenceCount(oxArray_tag const* array) {
    return host::require(array, "referenceCount").references.load(std::memory_order_acquire);
}

long referenceCount(ocos::COSInterface const* object) {
    if (object == nullptr) throw HostError("referenceCount: expected a host object, found null");
    return object->referenceCount();
}

std::string className(oxArray_tag const* array) { return host::classWord(host::require(array, "className")); }

}  // namespace ovrin::testing
