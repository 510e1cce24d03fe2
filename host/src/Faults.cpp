// Fault injection: each thread counts its own fallible host calls and may arm
// one of them to fail. Thread-local, so threads never see each other's faults.
#include "HostInternal.hpp"

#include <ovrin/testing.hpp>

namespace {

struct FaultState {
    std::uint64_t calls = 0;    ///< fallible calls made by this thread
    std::uint64_t failAt = 0;   ///< value of `calls` at which the armed fault fires; 0: none armed
};

[[gnu::tls_model("initial-exec")]] thread_local FaultState faults;

}  // namespace

namespace ovrin::host {

void enter(char const* operation) {
    ++faults.calls;
    if (faults.failAt != 0 && faults.calls == faults.failAt) {
        faults.failAt = 0;
        throw HostError(std::string("injected fault: ") + operation);
    }
}

}  // namespace ovrin::host

namespace ovrin::testing {

std::uint64_t hostCalls() noexcept { return faults.calls; }

void failHostCall(std::uint64_t n) noexcept { faults.failAt = n == 0 ? 0 : faults.calls + n; }

bool faultPending() noexcept { return faults.failAt != 0; }

}  // namespace ovrin::testing
