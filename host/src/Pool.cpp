// Per-thread free lists of small blocks, one list per power-of-two size class.
#include "Pool.hpp"

#include <sanitizer/asan_interface.h>

#include <bit>
#include <cstring>
#include <new>

#if defined(__SANITIZE_ADDRESS__)
#define OVRIN_POOL_ASAN 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define OVRIN_POOL_ASAN 1
#endif
#endif

namespace {

constexpr std::size_t smallestClassBytes = 32;
constexpr std::size_t classCount = 6;  ///< 32, 64, ..., 1024 bytes
constexpr std::size_t listCapBytes = 256 * 1024;  ///< most bytes one list keeps
constexpr std::size_t linkBytes = sizeof(void*);
static_assert(ovrin::host::pool::largestPooledBytes + linkBytes == smallestClassBytes << (classCount - 1));

#if defined(OVRIN_POOL_ASAN)
constexpr bool firstInFirstOut = true;  ///< a freed block waits behind every block freed before it
#else
constexpr bool firstInFirstOut = false;  ///< the block freed last, still in cache, is handed out first
#endif

/// Free blocks of one size class, linked through the word at the end of each block.
struct FreeList {
    void* head;
    void* tail;          ///< last block; kept only when first in, first out
    std::size_t count;
};

enum class Phase : unsigned char {
    Unused,  ///< no block went through this thread's lists yet
    Live,    ///< lists in use; drained when the thread ends
    Gone,    ///< drained: the heap serves this thread from now on
};

/// Trivially destructible, so reaching it costs no guard; `owner` drains it.
struct ThreadLists {
    FreeList lists[classCount];
    Phase phase;
};

[[gnu::tls_model("initial-exec")]] thread_local ThreadLists threadLists;

/// Drains this thread's lists into the heap when the thread ends.
struct ListsOwner {
    bool armed = false;
    ~ListsOwner();
};

thread_local ListsOwner listsOwner;

std::size_t classIndex(std::size_t bytes) noexcept {
    std::size_t const needed = bytes + linkBytes;
    return needed <= smallestClassBytes ? 0
                                        : static_cast<std::size_t>(std::bit_width(needed - 1)) -
                                              static_cast<std::size_t>(std::bit_width(smallestClassBytes - 1));
}

constexpr std::size_t classBytes(std::size_t index) noexcept { return smallestClassBytes << index; }

void* nextOf(void* block, std::size_t size) noexcept {
    void* next = nullptr;
    std::memcpy(&next, static_cast<char*>(block) + size - linkBytes, sizeof next);
    return next;
}

void setNext(void* block, std::size_t size, void* next) noexcept {
    std::memcpy(static_cast<char*>(block) + size - linkBytes, &next, sizeof next);
}

void activate() noexcept {
    listsOwner.armed = true;  // odr-use: registers the owner's destructor for this thread
    threadLists.phase = Phase::Live;
}

ListsOwner::~ListsOwner() {
    for (std::size_t index = 0; index < classCount; ++index) {
        FreeList& list = threadLists.lists[index];
        std::size_t const size = classBytes(index);
        for (void* block = list.head; block != nullptr;) {
            void* const next = nextOf(block, size);
            ASAN_UNPOISON_MEMORY_REGION(block, size - linkBytes);
            ::operator delete(block);
            block = next;
        }
        list = FreeList{};
    }
    threadLists.phase = Phase::Gone;
}

}  // namespace

namespace ovrin::host::pool {

void* allocate(std::size_t bytes) {
    if (bytes > largestPooledBytes) return ::operator new(bytes);
    std::size_t const index = classIndex(bytes);
    std::size_t const size = classBytes(index);
    ThreadLists& lists = threadLists;
    if (lists.phase == Phase::Live) {
        FreeList& list = lists.lists[index];
        if (void* const block = list.head) {
            list.head = nextOf(block, size);
            if (list.head == nullptr) list.tail = nullptr;
            --list.count;
            ASAN_UNPOISON_MEMORY_REGION(block, size - linkBytes);
            return block;
        }
    } else if (lists.phase == Phase::Unused) {
        activate();
    }
    return ::operator new(size);
}

void release(void* block, std::size_t bytes) noexcept {
    if (block == nullptr) return;
    if (bytes > largestPooledBytes) {
        ::operator delete(block);
        return;
    }
    std::size_t const index = classIndex(bytes);
    std::size_t const size = classBytes(index);
    ThreadLists& lists = threadLists;
    if (lists.phase == Phase::Unused) activate();
    FreeList& list = lists.lists[index];
    if (lists.phase == Phase::Gone || list.count >= listCapBytes / size) {
        ::operator delete(block);
        return;
    }
    ASAN_POISON_MEMORY_REGION(block, size - linkBytes);
    if constexpr (firstInFirstOut) {
        setNext(block, size, nullptr);
        if (list.tail != nullptr) {
            setNext(list.tail, size, block);
        } else {
            list.head = block;
        }
        list.tail = block;
    } else {
        setNext(block, size, list.head);
        list.head = block;
    }
    ++list.count;
}

}  // namespace ovrin::host::pool
