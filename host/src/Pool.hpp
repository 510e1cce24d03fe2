// Per-thread free lists of small blocks, for host objects and small arrays: a
// block freed on a thread is kept on that thread's list for its next allocation
// of the same size class instead of going back to the heap.
//
// Guarantees:
// - Blocks come from global operator new and go back to global operator delete
//   (a list longer than its cap, and every list when its thread ends), so the
//   heap sees every block and LeakSanitizer sees every block not on a list.
// - A block may be freed on any thread; it joins the list of the thread that frees it.
// - After this thread's lists are gone (thread exit, static destruction), every
//   call goes straight to the heap.
// What the lists hide from AddressSanitizer: a block on a list is poisoned (except
// its link word, kept past the caller's bytes), so a use after free is caught until
// the block is handed out again. Under AddressSanitizer the lists are first in, first
// out, so a freed block waits behind every block freed before it (a small quarantine);
// a stale pointer used after its block was reused is not caught.
#pragma once

#include <cstddef>

namespace ovrin::host::pool {

/// Blocks larger than this come from the heap directly.
inline constexpr std::size_t largestPooledBytes = 1024 - sizeof(void*);

/// A block of at least `bytes` bytes, aligned as global operator new aligns. Throws std::bad_alloc.
void* allocate(std::size_t bytes);

/// Gives back a block from `allocate(bytes)`, with the same `bytes`. Null is ignored.
void release(void* block, std::size_t bytes) noexcept;

}  // namespace ovrin::host::pool
