// The floor for a getter: an out-of-line call, across a shared-library
// boundary, that returns a pointer already stored in an object.
#pragma once

namespace bench {

struct PointerHolder {
    void const* stored = nullptr;  ///< the pointer the getter hands back
};

/// Returns `holder.stored`; defined in its own shared library so it is never inlined.
__attribute__((visibility("default"))) void const* storedPointer(PointerHolder const& holder) noexcept;

}  // namespace bench
