#include "support/StoredPointer.hpp"

namespace bench {

void const* storedPointer(PointerHolder const& holder) noexcept { return holder.stored; }

}  // namespace bench
