// Appending a record's copy() to a vector without an intermediate move.
#pragma once

#include <vector>

namespace reference::property::bridge {

/// Converts to `source.copy()`, so that emplace_back builds the copy directly in the
/// vector's storage instead of moving it there from a temporary. Borrows `source`.
template <class T>
struct CopyOf {
    T const& source;  ///< the record copied; must outlive the conversion

    operator T() const { return source.copy(); }  // implicit on purpose: emplace_back converts
};

/// A new vector, reserved to its final size, of each record's own copy(), in order.
template <class T>
std::vector<T> copyEach(std::vector<T> const& records) {
    std::vector<T> copies;
    copies.reserve(records.size());
    for (T const& record : records) copies.emplace_back(CopyOf<T>{record});
    return copies;
}

}  // namespace reference::property::bridge
