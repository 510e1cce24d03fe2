// Host class definitions of the library's classes, registered with the host
// object system.
#pragma once

namespace reference::glue {

/// Registers the four host enumeration classes and the host class of every
/// record class with the host object system. Idempotent; call before any
/// property traffic.
void registerClasses();

/// The enumeration classes, constructible from unsigned 32-bit numbers.
void registerEnumerationClasses();
/// The record classes: each wraps its native record and disposes of it by delete.
void registerRecordClasses();

}  // namespace reference::glue
