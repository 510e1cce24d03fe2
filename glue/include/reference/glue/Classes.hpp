// Host class definitions of the library's classes, registered with the host
// object system.
#pragma once

namespace reference::glue {

/// Registers the four host enumeration classes and the host class of every
/// record class with the host object system. Idempotent; call before any
/// property traffic.
void registerClasses();

/// The enumeration classes of allEnumerations(), constructible from unsigned 32-bit numbers.
void registerEnumerationClasses();
/// The record classes of allTables(): each wraps its native record, disposes of it by delete
/// and makes a default one on construction, as its table says.
void registerRecordClasses();

}  // namespace reference::glue
