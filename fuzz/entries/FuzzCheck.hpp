// Invariant checks of the fuzz entries: a broken invariant aborts the process,
// which the fuzzer reports as a crash and the replay test as a failure.
#pragma once

#include <cstdio>
#include <cstdlib>

namespace refprop::fuzz {

/// Aborts with `what` on stderr unless `holds`.
inline void check(bool holds, char const* what) {
    if (holds) return;
    std::fprintf(stderr, "fuzz invariant broken: %s\n", what);
    std::abort();
}

}  // namespace refprop::fuzz
