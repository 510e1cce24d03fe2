// Appending a record's copy() to a vector without an intermediate move.
#pragma once

namespace reference::property::bridge {

/// Converts to `source.copy()`, so that emplace_back builds the copy directly in the
/// vector's storage instead of moving it there from a temporary. Borrows `source`.
template <class T>
struct CopyOf {
    T const& source;  ///< the record copied; must outlive the conversion

    operator T() const { return source.copy(); }  // implicit on purpose: emplace_back converts
};

}  // namespace reference::property::bridge
