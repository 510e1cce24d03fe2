// Test hooks of the host runtime: what is alive, how often it is referenced,
// and fault injection. Not part of the host's product interface.
#pragma once

#include <ovrin/array.hpp>
#include <ovrin/export.hpp>
#include <ovrin/ocos.hpp>

#include <cstddef>
#include <cstdint>
#include <string>

namespace ovrin::testing {

/// Arrays created and not yet destroyed, in the whole process: the sum of every thread's
/// count, exact whenever no other thread is creating or destroying arrays.
OVRIN_HOST_API std::size_t liveArrays() noexcept;
/// Host objects created and not yet disposed of, in the whole process; exact as liveArrays is.
OVRIN_HOST_API std::size_t liveObjects() noexcept;

/// References held on an array, or on a host object.
OVRIN_HOST_API long referenceCount(oxArray_tag const* array);
OVRIN_HOST_API long referenceCount(ocos::COSInterface const* object);

/// The qualified class name of an object array, or the word of a built-in class ("uint32", "string", ...).
OVRIN_HOST_API std::string className(oxArray_tag const* array);

/// Fallible host calls made by this thread so far: every array and object-system operation that can
/// throw counts one at entry, except the pure queries (oxGetClassID, oxGetM, oxGetN,
/// oxGetNumberOfElements, oxGetArrayScope, oxIsInternal, oxIsComplex). The foundation's message
/// functions do not count, so a library's own exceptions are never replaced by injected faults.
OVRIN_HOST_API std::uint64_t hostCalls() noexcept;
/// Makes the `n`-th fallible host call of this thread from now on (1 = the next) throw an
/// `ovrin::HostError` naming the operation, once. 0 disarms.
OVRIN_HOST_API void failHostCall(std::uint64_t n) noexcept;
/// True when an armed fault has not fired yet.
OVRIN_HOST_API bool faultPending() noexcept;

/// Arms a fault for its lifetime and disarms it at the end of the scope.
class FaultScope {
public:
    explicit FaultScope(std::uint64_t n) noexcept { failHostCall(n); }
    FaultScope(FaultScope const&) = delete;
    FaultScope& operator=(FaultScope const&) = delete;
    ~FaultScope() { failHostCall(0); }
};

}  // namespace ovrin::testing
